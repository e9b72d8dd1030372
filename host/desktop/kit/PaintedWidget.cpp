#include "host/desktop/kit/PaintedWidget.h"

#include <utility>

namespace vel {

void PaintedWidget::setView(std::function<void(QPainter&)> paint,
                            std::function<void()> fontDidChange) {
  paint_ = std::move(paint);
  fontDidChange_ = std::move(fontDidChange);
}

void PaintedWidget::paintEvent(QPaintEvent* /*event*/) {
  if (paint_) {
    QPainter painter(this);
    paint_(painter);
  }
}

void PaintedWidget::changeEvent(QEvent* event) {
  QWidget::changeEvent(event);
  if (event->type() == QEvent::FontChange && fontDidChange_) {
    fontDidChange_();
  }
}

}  // namespace vel
