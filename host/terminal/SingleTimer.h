// A moment to wait for, as a file that a main loop can poll.
#pragma once

#include <chrono>

#include "host/EventDescriptor.h"

namespace vel {

class SingleTimer {
 public:
  /// Set to no moment. Throws std::system_error.
  SingleTimer();

  /// Instead of the moment set before. One that has passed is now.
  void set(std::chrono::steady_clock::time_point moment);
  void cancel();

  /// Readable from the moment on.
  [[nodiscard]] int descriptor() const { return timer_.get(); }
  /// Returns whether the moment has come, and not been told of before.
  [[nodiscard]] bool acknowledge();

 private:
  void arm(std::chrono::nanoseconds moment);

  EventDescriptor timer_;
};

}  // namespace vel
