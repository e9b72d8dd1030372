// The machine's own clock.
#include <algorithm>
#include <chrono>

#include "platform/foundation/Clock.h"

namespace vel {
namespace {

using Seconds = std::chrono::duration<double>;

/// Longer than any machine runs, and still within what the system's timers hold.
constexpr Seconds kLongestSleep{1e9};

}  // namespace

double SystemClock::now() const {
  return Seconds(std::chrono::system_clock::now().time_since_epoch()).count();
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
