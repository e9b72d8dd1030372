#include "host/desktop/windowing/PaintWatcher.h"

#include <QCoreApplication>
#include <QEvent>
#include <QPointer>
#include <utility>

namespace vel {

PaintWatcher::PaintWatcher(QWidget& widget, std::function<void()> didPaint)
    : didPaint_(std::move(didPaint)) {
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
  const std::function<void()> didPaint = didPaint_;
  didPaint();
  if (!self.isNull()) {
    self->painting_ = false;
  }
  return true;
}

}  // namespace vel
