// A whole terminal screen, painted through curses.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "host/terminal/Layout.h"
#include "host/terminal/Line.h"

namespace vel {

/// Takes the terminal of standard output over while it lives, one at a time, and leaves it as it
/// was. A terminal that takes no output at the moment is never waited for.
class Screen {
 public:
  /// Throws std::runtime_error.
  Screen();
  ~Screen();
  Screen(const Screen&) = delete;
  Screen& operator=(const Screen&) = delete;

  /// Of the window when the screen was opened or `fitToWindow` was called last.
  [[nodiscard]] LayoutSize size() const;
  void fitToWindow();

  /// Replaces what is shown; the terminal is sent the difference only.
  void paint(const std::vector<Line>& lines);

  /// Gives the terminal back while `use` runs, then restores the screen.
  void lend(const std::function<void()>& use);

  /// Takes the terminal again after others have used it unasked. Next, everything is sent anew.
  void restore();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vel
