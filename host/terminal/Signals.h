// Signals as a file that a main loop can poll.
#pragma once

#include <initializer_list>
#include <optional>

#include "host/EventDescriptor.h"

namespace vel {

/// Blocks the signals in the calling thread and in those that it starts later, for good. A signal
/// that the process was started to ignore, as by nohup, stays ignored.
class Signals {
 public:
  /// Throws std::system_error.
  Signals(std::initializer_list<int> signals);

  /// Readable while a signal waits.
  [[nodiscard]] int descriptor() const { return pending_.get(); }

  /// Takes the next signal that waits, if any.
  [[nodiscard]] std::optional<int> next() const;

 private:
  EventDescriptor pending_;
};

/// Stops the process as the terminal's Ctrl-Z does and returns when it goes on.
void stopProcess();

}  // namespace vel
