#include "host/terminal/TerminalHost.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>

#include "host/RefreshTimer.h"
#include "host/terminal/Keyboard.h"

namespace vel {

TerminalHost::TerminalHost(const Options& options, double interval, ModuleSession& session,
                           Display& display)
    : session_(session), display_(display), interval_(interval) {
  if (options.once) {
    hidden_ = 1;
    last_ = 2;
  } else {
    last_ = options.count.value_or(0);
  }
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
  serveQueue();
  RefreshTimer timer(interval_);
  loop_.watch(timer.descriptor(), POLLIN, [this, &timer](short) {
    timer.acknowledge();
    refresh();
  });
  loop_.run();
}

void TerminalHost::serveQueue() {
  loop_.watch(session_.wake().descriptor(), POLLIN, [this](short) {
    session_.wake().acknowledge();
    session_.mainQueue().drain();
  });
}

void TerminalHost::refresh() {
  ModulePrincipal& module = session_.module();
  module.updateModel();
  // Another number of gauges comes through the queue, and comes before the gauges' values.
  session_.mainQueue().drain();
  module.updateViews();
  ++done_;
  if (done_ > hidden_) {
    display_.show(module.readings());
  }
  if (done_ == last_) {
    loop_.end();
  }
}

}  // namespace vel
