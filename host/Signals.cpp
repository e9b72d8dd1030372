#include "host/Signals.h"

#include <sys/signalfd.h>
#include <unistd.h>

#include <csignal>

namespace vel {
namespace {

/// A blocked signal waits even where it is ignored.
bool isIgnored(int signal) {
  struct sigaction action {};
  return sigaction(signal, nullptr, &action) == 0 && action.sa_handler == SIG_IGN;
}

sigset_t blocked(std::initializer_list<int> signals) {
  sigset_t set;
  sigemptyset(&set);
  for (const int signal : signals) {
    if (!isIgnored(signal)) {
      sigaddset(&set, signal);
    }
  }
  pthread_sigmask(SIG_BLOCK, &set, nullptr);
  return set;
}

EventDescriptor openSignals(const sigset_t& set) {
  return {signalfd(-1, &set, SFD_NONBLOCK | SFD_CLOEXEC), "signalfd"};
}

}  // namespace

Signals::Signals(std::initializer_list<int> signals) : pending_(openSignals(blocked(signals))) {}

std::optional<int> Signals::next() const {
  signalfd_siginfo info{};
  if (read(pending_.get(), &info, sizeof info) != static_cast<ssize_t>(sizeof info)) {
    return std::nullopt;
  }
  return static_cast<int>(info.ssi_signo);
}

bool stopProcess(int signal) {
  // Curses may have put a handler there.
  (void)std::signal(signal, SIG_DFL);
  sigset_t stop;
  sigset_t before;
  sigemptyset(&stop);
  sigaddset(&stop, signal);
  (void)std::raise(signal);
  pthread_sigmask(SIG_UNBLOCK, &stop, &before);
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  sigset_t pending;
  sigpending(&pending);
  return sigismember(&pending, SIGCONT) == 1;
}

bool isForeground(int terminal) {
  const pid_t group = tcgetpgrp(terminal);
  return group == -1 || group == getpgrp();
}

}  // namespace vel
