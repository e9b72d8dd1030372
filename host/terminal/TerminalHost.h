// The main loop of the terminal host: refreshes, the module's tasks, keys and signals.
#pragma once

#include <chrono>
#include <cstdint>

#include "host/Signals.h"
#include "host/session/ModuleSession.h"
#include "host/terminal/DeferredReports.h"
#include "host/terminal/Display.h"
#include "host/terminal/EndPrompt.h"
#include "host/terminal/EventLoop.h"
#include "host/terminal/Keyboard.h"
#include "host/terminal/LiveDisplay.h"
#include "host/terminal/ModuleControls.h"
#include "host/terminal/Options.h"
#include "host/terminal/Panel.h"
#include "host/terminal/SingleTimer.h"
#include "host/terminal/TerminalNotifications.h"

namespace vel {

class TerminalHost {
 public:
  /// `interval` in seconds. `live` is the display where that is a live one, else null.
  TerminalHost(const Options& options, double interval, ModuleSession& session, const Panel& panel,
               Display& display, LiveDisplay* live);

  /// Signals that are about the screen go to the live display, all others end the program.
  void serveSignals(Signals& signals);
  /// The program ends with its reader.
  void watchOutput();
  /// There must be a live display.
  void serveKeyboard(ModuleControls& controls, EndPrompt& ending);

  /// What comes shows with the next refresh: on the live display, else as reports.
  void serveNotifications(TerminalNotifications& notifications, DeferredReports& reports);

  /// Until the last refresh, or until something ends the program.
  void run();

 private:
  void serveQueue();
  void serveSignal(int signal);
  void serveKey(Key key, ModuleControls& controls, EndPrompt& ending);
  void answer(Key key, EndPrompt& ending);
  void show(const EndPrompt& ending);

  /// At the timer's beat.
  void refreshInTurn();
  /// Out of turn, as soon as there is enough to measure.
  void refreshSoon();
  void refresh();
  void showNotifications();
  void show();
  /// After whatever may have brought the panel on screen: what it shows is older than the panel.
  void followPanel();

  ModuleSession& session_;
  const Panel& panel_;
  Display& display_;
  LiveDisplay* const live_;
  const double interval_;
  std::uint64_t hidden_ = 0;  ///< first refreshes that are not shown
  std::uint64_t last_ = 0;    ///< number of the refresh that ends the program, 0 for none
  std::uint64_t done_ = 0;    ///< refreshes in turn

  TerminalNotifications* notifications_ = nullptr;
  DeferredReports* reports_ = nullptr;

  SingleTimer rest_;  ///< to ask about what was started while other processes were ended
  SingleTimer extra_;
  bool extraIsDue_ = false;  ///< soon
  bool oneMore_ = false;     ///< to follow the next refresh
  std::chrono::steady_clock::time_point refreshed_;
  bool panelWasOnScreen_;
  EventLoop loop_;
};

}  // namespace vel
