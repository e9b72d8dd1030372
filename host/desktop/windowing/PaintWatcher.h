// Tells when a widget has painted itself.
#pragma once

#include <QObject>
#include <QWidget>
#include <functional>

namespace vel {

/// Calls its function after each painting of the widget, but not after one that the function itself
/// brings about before it returns.
class PaintWatcher : public QObject {
 public:
  PaintWatcher(QWidget& widget, std::function<void()> didPaint);

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  std::function<void()> didPaint_;
  bool painting_ = false;  ///< or in the function
};

}  // namespace vel
