#include "views/menubar/VELMenuBarGFXGPU.h"

namespace vel {

void VELMenuBarGFXGPU::setGputype(std::int64_t type) {
  if (type != gputype_) {
    gputype_ = type;
    view_.setNeedsDisplay();
  }
}

void VELMenuBarGFXGPU::setInnerColor(const Color& color) {
  innerColor_ = color;
  view_.setNeedsDisplay();
}

}  // namespace vel
