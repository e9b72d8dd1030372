// The widget kit: one gauge or a row of them.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/foundation/Property.h"
#include "platform/windowing/Color.h"
#include "platform/windowing/View.h"

namespace vel {

/// Holds what the gauges show; the toolkit's own class draws it. A new gauge is at 0, in the colour
/// of gauge 0.
class VELGaugeViewMultiple : public View {
 public:
  static constexpr const char* kNibClass = "VELGaugeViewMultiple";

  static constexpr std::int64_t kMaximumGauges = 4096;

  struct Gauge {
    float value = 0.0F;  ///< percent as it was given, outside 0 to 100 too
    Color innerColor;
    bool operator==(const Gauge&) const = default;
  };

  /// Of every gauge's outline.
  [[nodiscard]] Property<Color>& outerColor() { return outerColor_; }

  /// The style, from 1. One that the widget does not have is drawn as the nearest that it has.
  void setGaugeDefinedType(std::int64_t type);
  /// Fits the view's own width. A number outside 0 to `kMaximumGauges` counts as the nearer of
  /// these.
  void setNumberOfGauges(std::int64_t number);

  // An index at or beyond the number of gauges is ignored.
  void currentValueForGaugeAtIndex(float value, std::int64_t index);
  void innerColorForGaugeAtIndex(const Color& color, std::int64_t index);

  [[nodiscard]] std::int64_t gaugeDefinedType() const { return type_; }
  [[nodiscard]] const std::vector<Gauge>& gauges() const { return gauges_; }

 protected:
  /// The style or the number of gauges is another: the view's width has to fit it.
  virtual void layoutDidChange() = 0;
  /// A gauge's value or a colour is another.
  virtual void contentDidChange() = 0;

 private:
  [[nodiscard]] Gauge* gaugeAt(std::int64_t index);

  std::int64_t type_ = 1;
  std::vector<Gauge> gauges_{1};
  Property<Color> outerColor_{Color{}, [this](const Color&) { contentDidChange(); }};
};

}  // namespace vel
