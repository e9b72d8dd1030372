#include "host/desktop/kit/Contrast.h"

#include <algorithm>
#include <cmath>

namespace vel {

namespace {

/// Of the Web Content Accessibility Guidelines, level AA: for text.
constexpr double kReadableContrast = 4.5;

/// WCAG 2.1, "relative luminance".
double luminance(const QColor& color) {
  const auto linear = [](double component) {
    return component <= 0.03928 ? component / 12.92 : std::pow((component + 0.055) / 1.055, 2.4);
  };
  return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
         0.0722 * linear(color.blueF());
}

double contrast(const QColor& a, const QColor& b) {
  const auto [darker, lighter] = std::minmax({luminance(a), luminance(b)});
  return (lighter + 0.05) / (darker + 0.05);
}

}  // namespace

QColor readableOn(const QColor& background, QColor color) {
  const float step = luminance(background) < 0.18 ? 0.02F : -0.02F;
  while (contrast(color, background) < kReadableContrast && color.lightnessF() > 0.0F &&
         color.lightnessF() < 1.0F) {
    color = QColor::fromHslF(color.hslHueF(), color.hslSaturationF(),
                             std::clamp(color.lightnessF() + step, 0.0F, 1.0F));
  }
  return color;
}

}  // namespace vel
