// Lets the program end although it is writing to a terminal that takes no output.
#pragma once

#include <termios.h>

#include <csignal>

namespace vel {

/// While it lives, one at a time and in the main thread, blocked signals that end the program are
/// let through. If the writing does not end soon after one, the process does; otherwise the signal
/// waits again. Takes SIGALRM for itself.
class StallGuard {
 public:
  enum class Reason { goingOn, ending };

  /// `settings` are those in which a stalled terminal is left. When the program is `ending`, no
  /// signal is needed.
  StallGuard(const termios& settings, Reason reason);
  ~StallGuard();
  StallGuard(const StallGuard&) = delete;
  StallGuard& operator=(const StallGuard&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace vel
