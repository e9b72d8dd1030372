// A whole terminal screen, painted through curses.
#pragma once

#include <memory>
#include <vector>

#include "host/terminal/Layout.h"
#include "host/terminal/Line.h"

namespace vel {

/// Takes the terminal of standard output over while it lives, one at a time, and leaves it as it
/// was. Nothing is painted while the terminal takes no output at all; one that stalls halfway is
/// waited for, but not when the program is to end. While another process group is in the
/// foreground, the terminal is that one's and is left alone.
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

  /// To be asked before painting. Takes the terminal again after `giveBack` and `lose`; everything
  /// is then sent anew. False while the terminal is another's.
  [[nodiscard]] bool take();

  /// Replaces what is shown; the terminal is sent the difference only.
  void paint(const std::vector<Line>& lines);

  /// To be asked for as painting is.
  void ringBell();

  /// Leaves the terminal as it was.
  void giveBack();

  /// Others may have used the terminal unasked.
  void lose();

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vel
