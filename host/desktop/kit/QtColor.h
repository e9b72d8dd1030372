// The menu bar's colours, from the palette of the widget that shows it.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "platform/host/VELColor.h"

namespace vel {

/// Follows the palette of a widget: of the one it was made with, then of the latest that it has
/// been refreshed for. So a new theme recolours at once.
class QtColor : public VELColor, private QObject {
 public:
  explicit QtColor(QWidget& widget);

  /// A view without a widget of Qt's changes nothing.
  void refreshColorForView(View& view) override;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;

 private:
  void follow(QWidget& widget);

  QPointer<QWidget> followed_;
};

}  // namespace vel
