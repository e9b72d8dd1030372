// A graph of the load over time, in the panels.
#pragma once

#include <QPainter>

#include "host/desktop/kit/GraphPicture.h"
#include "host/desktop/kit/PaintedView.h"
#include "platform/host/VELGraphMultiple.h"

namespace vel {

/// In the palette's colours.
class QtGraphMultiple : public PaintedView<VELGraphMultiple> {
 public:
  using PaintedView::PaintedView;

 protected:
  void paint(QPainter& painter) override;

 private:
  GraphPicture picture_;  ///< kept for its memory
};

}  // namespace vel
