// Between Qt's colours and the platform's.
#pragma once

#include <QColor>
#include <algorithm>

#include "platform/windowing/Color.h"

namespace vel {

/// Components outside 0 to 1 are brought inside.
[[nodiscard]] inline QColor toQColor(const Color& color) {
  const auto component = [](double value) { return float(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue),
                          component(color.alpha));
}

[[nodiscard]] inline Color toColor(const QColor& color) {
  return {color.redF(), color.greenF(), color.blueF(), color.alphaF()};
}

}  // namespace vel
