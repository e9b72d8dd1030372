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

/// Stops the process by SIGTSTP, as the terminal's Ctrl-Z does, or by SIGTTIN. Returns when it goes
/// on: true, or false if nobody is there to continue it and it has not been stopped (man 7
/// credentials: an orphaned process group). SIGCONT must be blocked.
bool stopProcess(int signal);

/// Whether the process may use `terminal`. Where there is no job control, everybody may.
bool isForeground(int terminal);

}  // namespace vel
