// What the module asks of a view, whichever toolkit draws it.
#pragma once

namespace vel {

class View {
 public:
  View() = default;
  virtual ~View() = default;
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  /// Whether the window that shows the view is on screen; false for a view in no window.
  [[nodiscard]] virtual bool isWindowVisible() const = 0;
};

}  // namespace vel
