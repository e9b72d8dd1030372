// The machine's own clock.
#include <algorithm>
#include <chrono>
#include <ctime>

#include "platform/foundation/Clock.h"

namespace vel {
namespace {

using Seconds = std::chrono::duration<double>;

/// Longer than any machine runs, and still within what the system's timers hold.
constexpr Seconds kLongestSleep{1e9};

double secondsOf(clockid_t clock) {
  timespec time = {};
  ::clock_gettime(clock, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) / 1e9;
}

}  // namespace

SystemClock::SystemClock() : bootTime_(secondsOf(CLOCK_REALTIME) - secondsOf(CLOCK_BOOTTIME)) {}

double SystemClock::now() const {
  return bootTime_ + secondsOf(CLOCK_BOOTTIME);
}

void SystemClock::sleep(double seconds) {
  if (seconds > 0) {
    std::unique_lock lock(mutex_);
    ending_.wait_for(lock, std::min(Seconds(seconds), kLongestSleep),
                     [this] { return sleepsHaveEnded_; });
  }
}

void SystemClock::endSleeps() {
  {
    const std::lock_guard lock(mutex_);
    sleepsHaveEnded_ = true;
  }
  ending_.notify_all();
}

}  // namespace vel
