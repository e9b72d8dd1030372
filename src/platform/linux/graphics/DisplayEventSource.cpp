#include "platform/linux/graphics/DisplayEventSource.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdint>
#include <ctime>
#include <limits>

namespace vel {

DisplayEventSource::DisplayEventSource(const Timing& timing)
    : timing_(timing),
      end_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      clock_(::timerfd_create(CLOCK_REALTIME, TFD_CLOEXEC | TFD_NONBLOCK)),
      echo_(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC | TFD_NONBLOCK)),
      context_(udev_new()),
      monitor_(context_ ? udev_monitor_new_from_netlink(context_.get(), "udev") : nullptr),
      isReceiving_(startReceiving()) {
  watchClock();
}

bool DisplayEventSource::startReceiving() {
  return end_.isOpen() && monitor_ &&
         udev_monitor_filter_add_match_subsystem_devtype(monitor_.get(), "drm", nullptr) >= 0 &&
         udev_monitor_enable_receiving(monitor_.get()) >= 0;
}

/// The time never comes; but a timer of this kind ends when the clock jumps, as it does at waking
/// up (man 2 timerfd_create).
void DisplayEventSource::watchClock() const {
  itimerspec never{};
  never.it_value.tv_sec = std::numeric_limits<std::time_t>::max();
  (void)::timerfd_settime(clock_.number(), TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &never,
                          nullptr);
}

bool DisplayEventSource::wait() {
  auto files = std::to_array<pollfd>(
      {{.fd = end_.number(), .events = POLLIN, .revents = 0},
       {.fd = udev_monitor_get_fd(monitor_.get()), .events = POLLIN, .revents = 0},
       {.fd = clock_.number(), .events = POLLIN, .revents = 0},
       {.fd = echo_.number(), .events = POLLIN, .revents = 0}});
  for (;;) {
    if (::poll(files.data(), files.size(), -1) < 0 && errno != EINTR) {
      return false;
    }
    if (files[0].revents != 0) {
      return false;
    }
    if ((files[1].revents != 0 && takeMonitorEvent()) ||
        (files[2].revents != 0 && takeClockEvent())) {
      nextEcho_ = 0;
      awaitNextEcho();
      if (!isSoon()) {
        return true;
      }
      continue;
    }
    if (files[3].revents != 0 && takeEcho()) {
      awaitNextEcho();
      return true;
    }
  }
}

void DisplayEventSource::end() const {
  (void)::eventfd_write(end_.number(), 1);
}

/// What libudev does not take for udev's is gone and no event.
bool DisplayEventSource::takeMonitorEvent() {
  errno = 0;
  const Handle<udev_device> device(udev_monitor_receive_device(monitor_.get()));
  return device || errno == ENOBUFS;
}

bool DisplayEventSource::takeClockEvent() {
  std::uint64_t expirations = 0;
  const bool jumped =
      ::read(clock_.number(), &expirations, sizeof expirations) < 0 && errno == ECANCELED;
  watchClock();
  return jumped;
}

/// Whether the last event that was told is too near.
bool DisplayEventSource::isSoon() {
  const auto now = std::chrono::steady_clock::now();
  if (last_ && now - *last_ < timing_.apart) {
    return true;
  }
  last_ = now;
  return false;
}

bool DisplayEventSource::takeEcho() {
  std::uint64_t expirations = 0;
  return ::read(echo_.number(), &expirations, sizeof expirations) == sizeof expirations;
}

void DisplayEventSource::awaitNextEcho() {
  if (nextEcho_ == timing_.echoes.size()) {
    return;
  }
  const auto seconds = std::chrono::floor<std::chrono::seconds>(timing_.echoes.at(nextEcho_));
  const std::chrono::nanoseconds rest = timing_.echoes.at(nextEcho_) - seconds;
  ++nextEcho_;
  itimerspec once{};
  once.it_value.tv_sec = seconds.count();
  once.it_value.tv_nsec = rest.count();
  (void)::timerfd_settime(echo_.number(), 0, &once, nullptr);
}

}  // namespace vel
