// Everything that wakes the desktop host besides the display: the refresh, the module's tasks,
// signals.
#pragma once

#include <QSocketNotifier>
#include <QTimer>
#include <functional>
#include <memory>
#include <optional>

#include "host/RefreshTimer.h"
#include "host/Signals.h"
#include "host/session/ModuleSession.h"

namespace vel {

/// Served by Qt's event loop on the main thread.
class MainLoop {
 public:
  /// Both outlive this object. `updated` is called whenever views may have
  /// changed: after every refresh and task.
  MainLoop(ModuleSession& session, Signals& signals, std::function<void()> updated);

  /// Starts the refresh, or its beat anew with another interval, in milliseconds.
  void refreshEvery(std::int64_t milliseconds);

  /// Refreshes now and again soon, from where the beat goes on: for views that have not been on
  /// screen, as shares of processes need two samples that are near each other.
  void refreshTwice();

 private:
  void beat();
  void refresh();

  ModuleSession& session_;
  std::function<void()> updated_;
  QSocketNotifier tasks_;
  QSocketNotifier signals_;
  std::optional<RefreshTimer> timer_;
  std::unique_ptr<QSocketNotifier> beats_;
  std::int64_t interval_ = 0;  ///< in milliseconds
  QTimer second_;              ///< of the two refreshes
};

}  // namespace vel
