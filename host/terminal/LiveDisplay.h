// The readings on a terminal's whole screen.
#pragma once

#include "host/terminal/Display.h"
#include "host/terminal/Layout.h"
#include "host/terminal/Screen.h"
#include "platform/kernel/Kernel.h"

namespace vel {

class LiveDisplay : public Display {
 public:
  /// `item` is the module's, null for none. Throws std::runtime_error when the terminal cannot be
  /// set up.
  LiveDisplay(View* item, Kernel& kernel, const Labels& labels, const Locale& locale,
              LayoutStyle style)
      : itemView_(item), running_(kernel), labels_(labels), locale_(locale), style_(style) {}

  void show(const CPUData& record) override;

  /// The window has another size.
  void resize();

  /// Gives the terminal back and stops the process as Ctrl-Z does. It goes on with SIGCONT, which
  /// is then to be answered by `restore`.
  void stop();

  /// The process goes on after others may have used the terminal.
  void restore();

 private:
  void paint();

  View* const itemView_;
  RunningProcessors running_;
  const Labels& labels_;
  const Locale& locale_;
  const LayoutStyle style_;
  Screen screen_;
  Item item_;
  Readings readings_;
};

}  // namespace vel
