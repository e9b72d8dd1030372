// A row of gauges in the menu bar.
#pragma once

#include <QPainter>
#include <QTimer>

#include "host/desktop/kit/FittingView.h"
#include "host/desktop/kit/GaugePicture.h"
#include "platform/host/VELGaugeViewMultiple.h"

namespace vel {

/// Repaints only for what can be seen: a pixel, a segment or a colour. The changes of one round of
/// the event loop are looked at together.
class QtGauges : public FittingView<VELGaugeViewMultiple> {
 public:
  explicit QtGauges(PaintedWidget& widget);

 protected:
  void layoutDidChange() override { fit(); }
  void contentDidChange() override;
  void paint(QPainter& painter) override;

 private:
  void fit();
  void repaintIfVisiblyChanged();
  void layOut(GaugePicture& picture);

  // What was painted last, and where: in device pixels.
  GaugePicture painted_;
  QRect area_;
  double ratio_ = 1.0;

  GaugePicture present_;
  QTimer afterChanges_;
};

}  // namespace vel
