// The readings on a terminal's whole screen.
#pragma once

#include <chrono>
#include <string>
#include <utility>

#include "host/terminal/Content.h"
#include "host/terminal/Display.h"
#include "host/terminal/Layout.h"
#include "host/terminal/Panel.h"
#include "host/terminal/Screen.h"

namespace vel {

class LiveDisplay : public Display {
 public:
  /// Has the module's `panel` on screen while there is room for its processes. Throws
  /// std::runtime_error when the terminal cannot be set up.
  LiveDisplay(ContentSource& source, Panel& panel, const Labels& labels, const Locale& locale,
              LayoutStyle style)
      : source_(source),
        panel_(panel),
        labels_(labels),
        locale_(locale),
        style_(std::move(style)) {}

  void show(const CPUData& record) override;

  /// Shows what has changed without a refresh.
  void update();

  /// Rings the bell. The alert shows with the next refresh, and until it is dismissed or another
  /// takes its place.
  void alert(const std::wstring& text);
  void dismissAlert();

  /// Chooses the next row of the list, or the one before it with `step` -1; none after the last and
  /// before the first. The choice stays with the row's process, and goes with it.
  void choose(int step);
  void unchoose();
  [[nodiscard]] const ProcessEntry* chosen() const;
  /// When the list was shown last, since the machine was started.
  [[nodiscard]] std::chrono::nanoseconds shownAt() const { return shownAt_; }

  /// In front of the readings until it is empty.
  void prompt(const std::wstring& text, const std::wstring& keys);

  /// In the readings' place, or no more.
  void showHelp(bool shown);
  [[nodiscard]] bool isHelpShown() const { return helpShown_; }

  /// The window has another size.
  void resize();

  /// Gives the terminal back and stops the process as Ctrl-Z does. It goes on with SIGCONT, which
  /// is then to be answered by `restore`.
  void stop();

  /// The process goes on after others may have used the terminal.
  void restore();

 private:
  void paint();

  ContentSource& source_;
  Panel& panel_;
  const Labels& labels_;
  const Locale& locale_;
  const LayoutStyle style_;
  Screen screen_;
  Content content_;
  bool helpShown_ = false;
  bool hasProcesses_ = false;  ///< on screen
  std::chrono::nanoseconds shownAt_{0};
};

}  // namespace vel
