// The main loop of the terminal host: refreshes, the module's tasks, keys and signals.
#pragma once

#include <cstdint>

#include "host/Signals.h"
#include "host/session/ModuleSession.h"
#include "host/terminal/Display.h"
#include "host/terminal/EventLoop.h"
#include "host/terminal/LiveDisplay.h"
#include "host/terminal/Options.h"

namespace vel {

class TerminalHost {
 public:
  /// `interval` in seconds.
  TerminalHost(const Options& options, double interval, ModuleSession& session, Display& display);

  /// Signals that are about the screen go to `live`, all others end the program.
  void serveSignals(Signals& signals, LiveDisplay* live);
  /// The program ends with its reader.
  void watchOutput();
  void serveKeyboard();

  /// Until the last refresh, or until something ends the program.
  void run();

 private:
  void serveQueue();
  void refresh();

  ModuleSession& session_;
  Display& display_;
  const double interval_;
  std::uint64_t hidden_ = 0;  ///< first refreshes that are not shown
  std::uint64_t last_ = 0;    ///< number of the refresh that ends the program, 0 for none
  std::uint64_t done_ = 0;
  EventLoop loop_;
};

}  // namespace vel
