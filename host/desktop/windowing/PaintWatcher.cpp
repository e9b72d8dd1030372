#include "host/desktop/windowing/PaintWatcher.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <utility>

#include "host/desktop/windowing/QtDrawingContext.h"

namespace vel {

PaintWatcher::PaintWatcher(QWidget& widget, std::function<void(DrawingContext&)> didPaint)
    : widget_(widget), didPaint_(std::move(didPaint)) {
  widget.installEventFilter(this);
}

bool PaintWatcher::eventFilter(QObject* object, QEvent* event) {
  if (event->type() != QEvent::Paint || painting_) {
    return false;
  }
  painting_ = true;
  QCoreApplication::sendEvent(object, event);
  // The function may replace this watcher, and so itself.
  const QPointer<PaintWatcher> self(this);
  const std::function<void(DrawingContext&)> didPaint = didPaint_;
  QtDrawingContext context(widget_);
  didPaint(context);
  if (!self.isNull()) {
    self->painting_ = false;
  }
  return true;
}

}  // namespace vel
