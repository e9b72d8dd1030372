// The badge that tells which graphics processor is in use.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/foundation/Property.h"
#include "platform/windowing/Color.h"
#include "platform/windowing/View.h"

namespace vel {

/// A letter in a box of 10 by 12 points, one point from the left and five from the bottom of a view
/// that should be 11 by 17 at least.
class VELMenuBarGFXGPU {
 public:
  /// `view` outlives the badge, which draws it.
  explicit VELMenuBarGFXGPU(View& view);
  ~VELMenuBarGFXGPU() { view_.setDidDraw({}); }
  VELMenuBarGFXGPU(const VELMenuBarGFXGPU&) = delete;
  VELMenuBarGFXGPU& operator=(const VELMenuBarGFXGPU&) = delete;

  [[nodiscard]] View& view() const { return view_; }

  /// 0 integrated, anything else discrete.
  [[nodiscard]] std::int64_t gputype() const { return gputype_; }
  /// Comes with every refresh: the same type again draws nothing.
  void setGputype(std::int64_t type);

  /// Of the letter.
  [[nodiscard]] const Color& innerColor() const { return innerColor_; }
  /// Always draws the badge anew.
  void setInnerColor(const Color& color);

  /// Of the box.
  [[nodiscard]] Property<Color>& outerColor() { return outerColor_; }

 private:
  void drawGPUType(std::string_view text, DrawingContext& context) const;

  View& view_;
  std::int64_t gputype_ = 0;
  Color innerColor_;
  Property<Color> outerColor_{Color{}, [this](const Color&) { view_.setNeedsDisplay(); }};
};

}  // namespace vel
