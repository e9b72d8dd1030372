#include "platform/host/VELGaugeViewMultiple.h"

#include <algorithm>
#include <cstddef>

namespace vel {

void VELGaugeViewMultiple::setGaugeDefinedType(std::int64_t type) {
  if (type != type_) {
    type_ = type;
    layoutDidChange();
  }
}

void VELGaugeViewMultiple::setNumberOfGauges(std::int64_t number) {
  const auto size = static_cast<std::size_t>(std::clamp<std::int64_t>(number, 0, kMaximumGauges));
  if (size != gauges_.size()) {
    gauges_.resize(size, {0.0F, gauges_.empty() ? Color{} : gauges_.front().innerColor});
    layoutDidChange();
  }
}

void VELGaugeViewMultiple::currentValueForGaugeAtIndex(float value, std::int64_t index) {
  Gauge* gauge = gaugeAt(index);
  if (gauge != nullptr && gauge->value != value) {
    gauge->value = value;
    contentDidChange();
  }
}

void VELGaugeViewMultiple::innerColorForGaugeAtIndex(const Color& color, std::int64_t index) {
  Gauge* gauge = gaugeAt(index);
  if (gauge != nullptr && gauge->innerColor != color) {
    gauge->innerColor = color;
    contentDidChange();
  }
}

VELGaugeViewMultiple::Gauge* VELGaugeViewMultiple::gaugeAt(std::int64_t index) {
  const bool exists = index >= 0 && static_cast<std::size_t>(index) < gauges_.size();
  return exists ? &gauges_[static_cast<std::size_t>(index)] : nullptr;
}

}  // namespace vel
