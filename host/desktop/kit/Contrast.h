// Whether one colour can be told from another.
#pragma once

#include <QColor>

namespace vel {

/// `color`, moved towards black or white until it is readable on `background`.
[[nodiscard]] QColor readableOn(const QColor& background, QColor color);

}  // namespace vel
