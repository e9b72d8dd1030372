// A view of the module's over a widget of Qt's.
#pragma once

#include <QWidget>
#include <cmath>
#include <functional>
#include <memory>
#include <utility>

#include "host/desktop/windowing/PaintWatcher.h"
#include "host/desktop/windowing/WidgetViews.h"
#include "platform/windowing/View.h"

namespace vel {

/// Implements what `Interface` has of View. Frames are whole points, as Qt's are.
template <typename Interface>
class QtView : public Interface, public QtWidgetOwner {
 public:
  /// `widget` outlives the view.
  explicit QtView(QWidget& widget) : widget_(widget) {}

  [[nodiscard]] QWidget& widget() const override { return widget_; }

  [[nodiscard]] Rect frame() const override {
    const QRect rect = widget_.geometry();
    return {{double(rect.x()), double(rect.y())}, {double(rect.width()), double(rect.height())}};
  }
  void setFrameOrigin(Point origin) override {
    widget_.move(int(std::lround(origin.x)), int(std::lround(origin.y)));
  }
  void setFrameSize(Size size) override {
    widget_.resize(int(std::lround(size.width)), int(std::lround(size.height)));
  }
  [[nodiscard]] bool isHidden() const override { return widget_.isHidden(); }
  void setHidden(bool hidden) override { widget_.setHidden(hidden); }
  /// Kept for the classes that draw; Qt's own widgets are always opaque.
  void setAlphaValue(double alpha) override {
    if (alpha != alphaValue_) {
      alphaValue_ = alpha;
      widget_.update();
    }
  }
  void setNeedsDisplay() override { widget_.update(); }
  void setDidDraw(std::function<void(DrawingContext&)> didDraw) override {
    watcher_ = didDraw ? std::make_unique<PaintWatcher>(widget_, std::move(didDraw)) : nullptr;
  }
  [[nodiscard]] bool isWindowVisible() const override {
    const QWidget* window = widget_.window();
    return window != &widget_ && window->isVisible() && !window->isMinimized();
  }

  [[nodiscard]] double alphaValue() const { return alphaValue_; }

 private:
  QWidget& widget_;
  ViewRegistration registration_{widget_, *this};
  double alphaValue_ = 1.0;
  std::unique_ptr<PaintWatcher> watcher_;
};

}  // namespace vel
