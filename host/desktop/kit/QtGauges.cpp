#include "host/desktop/kit/QtGauges.h"

#include <algorithm>

#include "host/desktop/kit/GaugePainter.h"

namespace vel {

namespace {

/// Leaves gauges 16 points of the menu bar's usual 22.
QRect withMargins(const QRect& rect) {
  const int margin = std::clamp((rect.height() - 16) / 2, 0, 4);
  return rect.adjusted(0, margin, 0, -margin);
}

}  // namespace

QtGauges::QtGauges(PaintedWidget& widget) : FittingView(widget) {
  afterChanges_.setSingleShot(true);
  QObject::connect(&afterChanges_, &QTimer::timeout, [this] { repaintIfVisiblyChanged(); });
  fit();
}

void QtGauges::fit() {
  fitWidth(gaugesWidth(gaugeDefinedType(), gauges().size()));
}

void QtGauges::contentDidChange() {
  // One that is not on screen is painted anyway when it gets there.
  if (widget().isVisible() && !afterChanges_.isActive()) {
    afterChanges_.start(0);
  }
}

void QtGauges::repaintIfVisiblyChanged() {
  layOut(present_);
  if (present_ != painted_) {
    widget().update();
  }
}

void QtGauges::layOut(GaugePicture& picture) {
  picture.layOut(area_, ratio_, gaugeDefinedType(), gauges(), outerColor().get());
}

void QtGauges::paint(QPainter& painter) {
  area_ = devicePixels(painter, withMargins(widget().rect()));
  ratio_ = devicePixelRatio(painter);
  layOut(painted_);
  paintGauges(painter, painted_);
}

}  // namespace vel
