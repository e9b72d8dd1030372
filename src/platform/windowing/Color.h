// A colour as the views pass it on to widgets.
#pragma once

namespace vel {

/// Components from 0 to 1, not premultiplied.
struct Color {
  double red = 0.0;
  double green = 0.0;
  double blue = 0.0;
  double alpha = 1.0;

  bool operator==(const Color&) const = default;

  [[nodiscard]] constexpr Color withAlpha(double value) const { return {red, green, blue, value}; }
};

inline constexpr Color redColor{1.0, 0.0, 0.0, 1.0};

}  // namespace vel
