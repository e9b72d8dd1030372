#include "host/terminal/StallGuard.h"

#include <unistd.h>

#include <initializer_list>

namespace vel {
namespace {

constexpr unsigned kPatience = 1;  // s

volatile std::sig_atomic_t seen = 0;
termios farewell{};

void remember(int signal) {
  seen = signal;
  alarm(kPatience);
}

void giveUp(int /*signal*/) {
  tcsetattr(STDOUT_FILENO, TCSANOW, &farewell);
  _exit(0);
}

}  // namespace

StallGuard::StallGuard(const termios& settings, Reason reason) {
  farewell = settings;
  (void)std::signal(SIGALRM, giveUp);
  pthread_sigmask(SIG_SETMASK, nullptr, &before_);
  sigset_t open = before_;
  sigdelset(&open, SIGALRM);
  for (const int signal : {SIGHUP, SIGINT, SIGQUIT, SIGTERM}) {
    // One that is not blocked is to be ignored.
    if (sigismember(&before_, signal) == 1) {
      (void)std::signal(signal, remember);
      sigdelset(&open, signal);
    }
  }
  if (reason == Reason::ending) {
    alarm(kPatience);
  }
  pthread_sigmask(SIG_SETMASK, &open, nullptr);
}

StallGuard::~StallGuard() {
  alarm(0);
  pthread_sigmask(SIG_SETMASK, &before_, nullptr);
  if (seen != 0) {
    (void)std::raise(seen);
    seen = 0;
  }
}

}  // namespace vel
