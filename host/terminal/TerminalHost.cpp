#include "host/terminal/TerminalHost.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>

#include "host/terminal/Keyboard.h"

namespace vel {

TerminalHost::TerminalHost(const Options& options, ModulePrincipal& module, Display& display)
    : module_(module), display_(display), interval_(options.interval) {
  if (options.once) {
    hidden_ = 1;
    last_ = 2;
  } else {
    last_ = options.count.value_or(0);
  }
}

void TerminalHost::serveQueue(WakeEvent& wake, MainQueue& queue) {
  loop_.watch(wake.descriptor(), POLLIN, [&wake, &queue](short) {
    wake.acknowledge();
    queue.drain();
  });
}

void TerminalHost::serveSignals(Signals& signals, LiveDisplay* live) {
  loop_.watch(signals.descriptor(), POLLIN, [this, &signals, live](short) {
    while (const auto signal = signals.next()) {
      if (live != nullptr && *signal == SIGWINCH) {
        live->resize();
      } else if (live != nullptr && *signal == SIGTSTP) {
        live->stop();
      } else if (live != nullptr && *signal == SIGCONT) {
        live->restore();
      } else {
        loop_.end();
      }
    }
  });
}

void TerminalHost::watchOutput() {
  loop_.watch(STDOUT_FILENO, 0, [this](short) { loop_.end(); });
}

void TerminalHost::serveKeyboard() {
  loop_.watch(STDIN_FILENO, POLLIN, [this](short) {
    // Read by a program in the background, the terminal would stop it again and again, and it
    // would never come to see the signal that ends it.
    const bool end = isForeground(STDIN_FILENO) ? readsEnd(STDIN_FILENO) : !stopProcess(SIGTTIN);
    if (end) {
      loop_.end();
    }
  });
}

void TerminalHost::run() {
  RefreshTimer timer(interval_);
  loop_.watch(timer.descriptor(), POLLIN, [this, &timer](short) {
    timer.acknowledge();
    refresh();
  });
  loop_.run();
}

void TerminalHost::refresh() {
  module_.updateModel();
  module_.updateViews();
  ++done_;
  if (done_ > hidden_) {
    display_.show(module_.readings());
  }
  if (done_ == last_) {
    loop_.end();
  }
}

}  // namespace vel
