// The beat of the refresh, as a file that a main loop can poll.
#pragma once

#include "host/EventDescriptor.h"

namespace vel {

/// Fires at once and then every interval, on a grid of the monotonic clock that late wake-ups do
/// not shift. Beats missed while the loop was busy, or the machine asleep, are not made up for.
class RefreshTimer {
 public:
  /// Throws std::system_error.
  explicit RefreshTimer(double intervalSeconds);

  /// Readable from a beat until `acknowledge`.
  [[nodiscard]] int descriptor() const { return timer_.get(); }
  void acknowledge();

 private:
  EventDescriptor timer_;
};

}  // namespace vel
