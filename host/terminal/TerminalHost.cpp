#include "host/terminal/TerminalHost.h"

#include <poll.h>
#include <unistd.h>

#include <csignal>

#include "host/RefreshTimer.h"
#include "host/terminal/Text.h"

namespace vel {
namespace {

/// The kernel counts in ticks of a hundredth of a second or longer: of a shorter time there is
/// little to tell.
constexpr std::chrono::milliseconds kLeastSample{100};

/// From a panel's first reading of the processes to the second, with which it has shares.
constexpr std::chrono::milliseconds kFirstSample{400};

/// Within which most programs end, and the processes that they have started.
constexpr std::chrono::milliseconds kShortly{400};

}  // namespace

TerminalHost::TerminalHost(const Options& options, double interval, ModuleSession& session,
                           const Panel& panel, Display& display, LiveDisplay* live)
    : session_(session),
      panel_(panel),
      display_(display),
      live_(live),
      interval_(interval),
      panelWasOnScreen_(panel.isOnScreen()) {
  if (options.once) {
    hidden_ = 1;
    last_ = 2;
  } else {
    last_ = options.count.value_or(0);
  }
}

void TerminalHost::serveSignals(Signals& signals) {
  loop_.watch(signals.descriptor(), POLLIN, [this, &signals](short) {
    while (const auto signal = signals.next()) {
      serveSignal(*signal);
    }
  });
}

void TerminalHost::serveSignal(int signal) {
  if (live_ != nullptr && signal == SIGWINCH) {
    live_->resize();
  } else if (live_ != nullptr && signal == SIGTSTP) {
    live_->stop();
  } else if (live_ != nullptr && signal == SIGCONT) {
    live_->restore();
  } else {
    loop_.end();
  }
  followPanel();
}

void TerminalHost::watchOutput() {
  loop_.watch(STDOUT_FILENO, 0, [this](short) { loop_.end(); });
}

void TerminalHost::serveKeyboard(ModuleControls& controls, EndPrompt& ending) {
  loop_.watch(STDIN_FILENO, POLLIN, [this, &controls, &ending](short) {
    // Read by a program in the background, the terminal would stop it again and again, and it
    // would never come to see the signal that ends it.
    if (!isForeground(STDIN_FILENO)) {
      if (!stopProcess(SIGTTIN)) {
        loop_.end();
      }
      return;
    }
    const auto keys = readKeys(STDIN_FILENO);
    if (!keys) {
      loop_.end();
      return;
    }
    for (auto key = keys->begin(); key != keys->end() && !loop_.isEnding(); ++key) {
      serveKey(*key, controls, ending);
    }
    followPanel();
  });
  loop_.watch(rest_.descriptor(), POLLIN, [this, &ending](short) {
    if (rest_.acknowledge()) {
      ending.askAboutTheRest();
      show(ending);
    }
  });
}

void TerminalHost::answer(Key key, EndPrompt& ending) {
  if (ending.answer(key)) {
    rest_.set(std::chrono::steady_clock::now() + kShortly);
    refreshSoon();
  }
  show(ending);
}

void TerminalHost::show(const EndPrompt& ending) {
  live_->prompt(ending.text(), ending.answers());
}

void TerminalHost::serveKey(Key key, ModuleControls& controls, EndPrompt& ending) {
  if (live_->isHelpShown()) {
    live_->showHelp(false);
    return;
  }
  if (ending.isAsking()) {
    answer(key, ending);
    return;
  }
  ending.dismiss();
  switch (key) {
    case Key::quit:
      loop_.end();
      break;
    case Key::help:
      live_->showHelp(true);
      break;
    case Key::ranking:
      if (controls.hasRanking()) {
        controls.chooseNextRanking();
        refreshSoon();
      }
      break;
    case Key::cores:
      // Other gauges have no values before the next refresh.
      if (controls.hasCores()) {
        controls.chooseNextCores();
        refreshSoon();
      }
      break;
    case Key::graph:
      controls.toggleGraph();
      break;
    case Key::gpu:
      controls.toggleGPU();
      break;
    case Key::gpuAlert:
      controls.toggleGPUAlert();
      break;
    case Key::alert:
      controls.toggleAlert();
      break;
    case Key::lowerThreshold:
      controls.lowerThreshold();
      break;
    case Key::higherThreshold:
      controls.raiseThreshold();
      break;
    case Key::shorterDuration:
      controls.shortenDuration();
      break;
    case Key::longerDuration:
      controls.lengthenDuration();
      break;
    case Key::dismiss:
      live_->dismissAlert();
      break;
    case Key::up:
      live_->choose(-1);
      break;
    case Key::down:
      live_->choose(1);
      break;
    case Key::escape:
      live_->unchoose();
      break;
    case Key::end:
      if (const ProcessEntry* const row = live_->chosen()) {
        ending.ask(*row, live_->shownAt());
      } else if (panel_.isOnScreen()) {
        ending.askForChoice();
      }
      break;
    case Key::yes:
    case Key::force:
    case Key::other:
      break;
  }
  show(ending);
}

void TerminalHost::serveNotifications(TerminalNotifications& notifications,
                                      DeferredReports& reports) {
  notifications_ = &notifications;
  reports_ = &reports;
}

void TerminalHost::run() {
  serveQueue();
  RefreshTimer timer(interval_);
  loop_.watch(timer.descriptor(), POLLIN, [this, &timer](short) {
    timer.acknowledge();
    refreshInTurn();
  });
  loop_.watch(extra_.descriptor(), POLLIN, [this](short) {
    // A refresh in turn may just have come before it.
    if (extra_.acknowledge()) {
      refresh();
      show();
    }
  });
  loop_.run();
}

void TerminalHost::serveQueue() {
  loop_.watch(session_.wake().descriptor(), POLLIN, [this](short) {
    session_.wake().acknowledge();
    session_.mainQueue().drain();
    showNotifications();
    // A setting that has changed may show.
    if (live_ != nullptr && done_ > 0 && !extraIsDue_) {
      live_->update();
      followPanel();
    }
  });
}

void TerminalHost::refreshInTurn() {
  refresh();
  ++done_;
  if (done_ > hidden_) {
    show();
  }
  if (done_ == last_) {
    loop_.end();
  }
}

void TerminalHost::refreshSoon() {
  extraIsDue_ = true;
  extra_.set(refreshed_ + kLeastSample);
}

void TerminalHost::refresh() {
  ModulePrincipal& module = session_.module();
  module.updateModel();
  // Another number of gauges comes through the queue, and comes before the gauges' values.
  session_.mainQueue().drain();
  module.updateViews();
  showNotifications();
  refreshed_ = std::chrono::steady_clock::now();
  // It was what an extra one was for.
  extraIsDue_ = false;
  extra_.cancel();
  if (oneMore_) {
    oneMore_ = false;
    extra_.set(refreshed_ + kFirstSample);
  }
}

void TerminalHost::showNotifications() {
  if (notifications_ == nullptr) {
    return;
  }
  for (const std::wstring& text : notifications_->take()) {
    if (live_ != nullptr) {
      live_->alert(text);
    } else {
      reports_->add(encode(text));
    }
  }
}

void TerminalHost::show() {
  display_.show(session_.module().readings());
  followPanel();
}

void TerminalHost::followPanel() {
  const bool appeared = panel_.isOnScreen() && !panelWasOnScreen_;
  panelWasOnScreen_ = panel_.isOnScreen();
  if (appeared) {
    oneMore_ = true;
    refreshSoon();
  }
}

}  // namespace vel
