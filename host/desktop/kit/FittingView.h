// What the views in the menu bar have in common: each decides its own width.
#pragma once

#include "host/desktop/kit/PaintedView.h"

namespace vel {

/// Whoever sets its size sets the height.
template <typename Interface>
class FittingView : public PaintedView<Interface> {
 public:
  using PaintedView<Interface>::PaintedView;

  void setFrameSize(Size size) override {
    PaintedView<Interface>::setFrameSize({double(fittingWidth_), size.height});
  }

 protected:
  void fitWidth(int width) {
    fittingWidth_ = width;
    this->widget().resize(width, this->widget().height());
    this->widget().update();
  }

 private:
  int fittingWidth_ = 0;
};

}  // namespace vel
