#include "views/menubar/VELMenuBarGFXGPU.h"

namespace vel {
namespace {

// In half points, which are what everything but the box's place is drawn in.
constexpr double kScale = 0.5;
constexpr Rect kBox{{1.0, 1.0}, {20.0, 24.0}};
constexpr Size kRadii{2.0, 2.0};
constexpr double kFontSize = 24.0;
constexpr double kRaised = 1.0;  ///< the text, above the middle of the box

constexpr Point kOrigin{0.5, 4.5};  ///< in points

}  // namespace

VELMenuBarGFXGPU::VELMenuBarGFXGPU(View& view) : view_(view) {
  view_.setDidDraw(
      [this](DrawingContext& context) { drawGPUType(gputype_ != 0 ? "d" : "i", context); });
}

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

void VELMenuBarGFXGPU::drawGPUType(std::string_view text, DrawingContext& context) const {
  context.saveState();
  context.translate(kOrigin.x, kOrigin.y);
  context.scale(kScale, kScale);
  context.fillRoundedRect(kBox, kRadii, outerColor_.get());

  const TextAttributes attributes{kFontSize, innerColor_, TextAlignment::center};
  const double height = context.sizeOfText(text, kBox.size, attributes).height;
  const double y = kBox.origin.y + (kBox.size.height - height) / 2.0 + kRaised;
  context.saveState();
  context.clip(kBox);
  context.drawText(text, {{kBox.origin.x, y}, {kBox.size.width, height}}, attributes);
  context.restoreState();
  context.restoreState();
}

}  // namespace vel
