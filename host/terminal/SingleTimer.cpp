#include "host/terminal/SingleTimer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <ctime>
#include <system_error>

namespace vel {

SingleTimer::SingleTimer()
    : timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC), "timerfd_create") {}

void SingleTimer::set(std::chrono::steady_clock::time_point moment) {
  arm(moment.time_since_epoch());
}

void SingleTimer::cancel() {
  arm(std::chrono::nanoseconds{0});
}

/// Of the monotonic clock, which the steady one is.
void SingleTimer::arm(std::chrono::nanoseconds moment) {
  constexpr std::chrono::nanoseconds kSecond = std::chrono::seconds{1};
  itimerspec time{};
  time.it_value.tv_sec = static_cast<time_t>(moment / kSecond);
  time.it_value.tv_nsec = static_cast<decltype(time.it_value.tv_nsec)>((moment % kSecond).count());
  if (timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME, &time, nullptr) == -1) {
    throw std::system_error(errno, std::generic_category(), "timerfd_settime");
  }
}

bool SingleTimer::acknowledge() {
  std::uint64_t times = 0;
  return read(timer_.get(), &times, sizeof times) == sizeof times;
}

}  // namespace vel
