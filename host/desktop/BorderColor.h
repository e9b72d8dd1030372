// Where bar and panels end and the rest of the screen begins.
#pragma once

#include <QPalette>

namespace vel {

inline QColor borderColor(const QPalette& palette) {
  QColor color = palette.color(QPalette::WindowText);
  color.setAlphaF(0.25);
  return color;
}

}  // namespace vel
