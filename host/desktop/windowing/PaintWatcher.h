// Tells when a widget has painted itself, and with what to go on.
#pragma once

#include <QObject>
#include <QWidget>
#include <functional>

#include "platform/windowing/DrawingContext.h"

namespace vel {

/// Calls its function after each painting of the widget, but not after one that the function itself
/// brings about before it returns.
class PaintWatcher : public QObject {
 public:
  PaintWatcher(QWidget& widget, std::function<void(DrawingContext&)> didPaint);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  QWidget& widget_;
  std::function<void(DrawingContext&)> didPaint_;
  bool painting_ = false;  ///< or in the function
};

}  // namespace vel
