// The badge that tells which graphics processor is in use.
#pragma once

#include <cstdint>

#include "platform/foundation/Property.h"
#include "platform/windowing/Color.h"
#include "platform/windowing/View.h"

namespace vel {

class VELMenuBarGFXGPU {
 public:
  /// `view` outlives the badge.
  explicit VELMenuBarGFXGPU(View& view) : view_(view) {}

  [[nodiscard]] View& view() const { return view_; }

  /// 0 integrated, anything else discrete.
  [[nodiscard]] std::int64_t gputype() const { return gputype_; }
  /// Comes with every refresh: the same type again draws nothing.
  void setGputype(std::int64_t type);

  /// Of the letter.
  [[nodiscard]] const Color& innerColor() const { return innerColor_; }
  void setInnerColor(const Color& color);

  /// Of the box.
  [[nodiscard]] Property<Color>& outerColor() { return outerColor_; }

 private:
  View& view_;
  std::int64_t gputype_ = 0;
  Color innerColor_;
  Property<Color> outerColor_{Color{}, [this](const Color&) { view_.setNeedsDisplay(); }};
};

}  // namespace vel
