// The widget kit: the menu bar's colours for its present appearance.
#pragma once

#include <cstdint>

#include "platform/foundation/Property.h"
#include "platform/windowing/Color.h"
#include "platform/windowing/View.h"

namespace vel {

/// The toolkit's own class keeps the properties at the desktop's colours.
class VELColor : public NibObject {
 public:
  static constexpr const char* kNibClass = "VELColor";

  /// Of menu-bar text, and of a gauge at normal load.
  [[nodiscard]] Property<Color>& statusLabelColor() { return statusLabelColor_; }
  /// The faint one: gauge outlines, the badge's background.
  [[nodiscard]] Property<Color>& statusQuarternaryLabelColor() {
    return statusQuarternaryLabelColor_;
  }
  /// 0 for the plain, light menu bar, 1 for a dark one.
  [[nodiscard]] std::int64_t statusItemBackgroundStyle() const { return backgroundStyle_; }

  /// Evaluates the colours anew for a view that has just been drawn.
  virtual void refreshColorForView(View& view) = 0;

 protected:
  /// The style goes first: what is bound to the colours asks for it.
  void set(const Color& label, const Color& quarternary, std::int64_t backgroundStyle) {
    backgroundStyle_ = backgroundStyle;
    statusQuarternaryLabelColor_.set(quarternary);
    statusLabelColor_.set(label);
  }

 private:
  Property<Color> statusLabelColor_;
  Property<Color> statusQuarternaryLabelColor_{Color{0.0, 0.0, 0.0, 0.25}};
  std::int64_t backgroundStyle_ = 0;
};

}  // namespace vel
