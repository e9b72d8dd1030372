// Wakes a main loop from any thread, as a file that the loop can poll.
#pragma once

#include "host/EventDescriptor.h"

namespace vel {

class WakeEvent {
 public:
  /// Throws std::system_error.
  WakeEvent();

  void wake();

  /// Readable from `wake` until `acknowledge`.
  [[nodiscard]] int descriptor() const { return event_.get(); }
  void acknowledge();

 private:
  EventDescriptor event_;
};

}  // namespace vel
