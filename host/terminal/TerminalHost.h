// The main loop of the terminal host: refreshes, the module's tasks, keys and signals.
#pragma once

#include <cstdint>

#include "host/RefreshTimer.h"
#include "host/WakeEvent.h"
#include "host/terminal/Display.h"
#include "host/terminal/EventLoop.h"
#include "host/terminal/LiveDisplay.h"
#include "host/terminal/Options.h"
#include "host/terminal/Signals.h"
#include "platform/foundation/MainQueue.h"
#include "platform/host/ModulePrincipal.h"

namespace vel {

class TerminalHost {
 public:
  TerminalHost(const Options& options, ModulePrincipal& module, Display& display);

  void serveQueue(WakeEvent& wake, MainQueue& queue);
  /// Signals that are about the screen go to `live`, all others end the program.
  void serveSignals(Signals& signals, LiveDisplay* live);
  /// The program ends with its reader.
  void watchOutput();
  void serveKeyboard();

  /// Until the last refresh, or until something ends the program.
  void run();

 private:
  void refresh();

  ModulePrincipal& module_;
  Display& display_;
  const double interval_;
  std::uint64_t hidden_ = 0;  ///< first refreshes that are not shown
  std::uint64_t last_ = 0;    ///< number of the refresh that ends the program, 0 for none
  std::uint64_t done_ = 0;
  EventLoop loop_;
};

}  // namespace vel
