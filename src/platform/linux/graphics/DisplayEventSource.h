// What the kernel tells about displays, one event at a time.
#pragma once

#include <libudev.h>

#include <array>
#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>

#include "platform/linux/FileDescriptor.h"

namespace vel {

/// Each event of udev in the "drm" subsystem is one; so is the loss of events that came too fast,
/// and the machine's waking up, or any jump of its clock, as displays may have changed during sleep
/// without a word.
///
/// Each has echoes: udev tells that something was plugged in, and nobody tells when the desktop has
/// made up its mind and uses it, which takes it from moments to seconds. What comes soon after an
/// event only starts its echoes anew, lest a loose plug keeps those who listen busy.
class DisplayEventSource {
 public:
  struct Timing {
    std::chrono::milliseconds apart = std::chrono::milliseconds(500);  ///< one event and the next
    /// Each from what was before it.
    std::array<std::chrono::milliseconds, 3> echoes = {
        std::chrono::seconds(1), std::chrono::seconds(2), std::chrono::seconds(4)};
  };

  /// Receives from now on, if udev can be had.
  explicit DisplayEventSource(const Timing& timing);

  [[nodiscard]] bool isReceiving() const { return isReceiving_; }

  /// Waits until there is an event and takes it. False once `end` has been called, whatever events
  /// still wait.
  bool wait();

  /// Ends a `wait` under way and all to come; on any thread.
  void end() const;

 private:
  struct Unref {
    void operator()(udev* context) const { udev_unref(context); }
    void operator()(udev_monitor* monitor) const { udev_monitor_unref(monitor); }
    void operator()(udev_device* device) const { udev_device_unref(device); }
  };
  template <typename T>
  using Handle = std::unique_ptr<T, Unref>;

  bool startReceiving();
  void watchClock() const;
  bool takeMonitorEvent();
  bool takeClockEvent();
  bool takeEcho();
  void awaitNextEcho();
  bool isSoon();

  const Timing timing_;
  std::size_t nextEcho_ = 0;
  std::optional<std::chrono::steady_clock::time_point> last_;  ///< event that was told
  const FileDescriptor end_;
  const FileDescriptor clock_;
  const FileDescriptor echo_;
  const Handle<udev> context_;
  const Handle<udev_monitor> monitor_;
  const bool isReceiving_;
};

}  // namespace vel
