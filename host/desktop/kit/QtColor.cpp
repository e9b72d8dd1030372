#include "host/desktop/kit/QtColor.h"

#include <QEvent>
#include <QPalette>

#include "host/desktop/windowing/Colors.h"
#include "host/desktop/windowing/QtView.h"

namespace vel {

QtColor::QtColor(QWidget& widget) {
  follow(widget);
}

void QtColor::refreshColorForView(View& view) {
  if (const auto* owner = dynamic_cast<QtWidgetOwner*>(&view)) {
    follow(owner->widget());
  }
}

bool QtColor::eventFilter(QObject* object, QEvent* event) {
  if (event->type() == QEvent::PaletteChange && object == followed_.data()) {
    follow(*followed_);
  }
  return false;
}

void QtColor::follow(QWidget& widget) {
  if (followed_.data() != &widget) {
    if (!followed_.isNull()) {
      followed_->removeEventFilter(this);
    }
    followed_ = &widget;
    widget.installEventFilter(this);
  }
  const QPalette palette = widget.palette();
  const bool isDark = palette.color(QPalette::Window).lightnessF() < 0.5F;
  const Color label = toColor(palette.color(QPalette::WindowText));
  // The same share of light on dark looks fainter than of dark on light.
  set(label, label.withAlpha(label.alpha * (isDark ? 0.30 : 0.25)), isDark ? 1 : 0);
}

}  // namespace vel
