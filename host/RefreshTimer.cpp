#include "host/RefreshTimer.h"

#include <sys/timerfd.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <system_error>

namespace vel {
namespace {

timespec toTimespec(double seconds) {
  const auto nanoseconds = std::llround(seconds * 1e9);
  timespec time{};
  time.tv_sec = static_cast<time_t>(nanoseconds / 1'000'000'000);
  time.tv_nsec = static_cast<decltype(time.tv_nsec)>(nanoseconds % 1'000'000'000);
  return time;
}

}  // namespace

RefreshTimer::RefreshTimer(double intervalSeconds)
    : timer_(timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC), "timerfd_create") {
  itimerspec beat{};
  clock_gettime(CLOCK_MONOTONIC, &beat.it_value);
  beat.it_interval = toTimespec(intervalSeconds);
  if (timerfd_settime(timer_.get(), TFD_TIMER_ABSTIME, &beat, nullptr) == -1) {
    throw std::system_error(errno, std::generic_category(), "timerfd_settime");
  }
}

void RefreshTimer::acknowledge() {
  std::uint64_t beats = 0;
  [[maybe_unused]] const auto size = read(timer_.get(), &beats, sizeof beats);
}

}  // namespace vel
