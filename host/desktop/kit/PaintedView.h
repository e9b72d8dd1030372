// What the kit's visible views have in common: each paints a widget of its own.
#pragma once

#include <QPainter>
#include <QPointer>

#include "host/desktop/kit/PaintedWidget.h"
#include "host/desktop/windowing/QtView.h"

namespace vel {

template <typename Interface>
class PaintedView : public QtView<Interface> {
 public:
  explicit PaintedView(PaintedWidget& widget) : QtView<Interface>(widget), painted_(&widget) {
    widget.setView(
        [this](QPainter& painter) {
          painter.setOpacity(this->alphaValue());
          paint(painter);
        },
        [this] { fontDidChange(); });
  }
  ~PaintedView() override {
    if (!painted_.isNull()) {
      painted_->setView({});
    }
  }
  PaintedView(const PaintedView&) = delete;
  PaintedView& operator=(const PaintedView&) = delete;

 protected:
  virtual void paint(QPainter& painter) = 0;
  virtual void fontDidChange() {}

 private:
  QPointer<PaintedWidget> painted_;  ///< a window that goes first takes its widgets with it
};

}  // namespace vel
