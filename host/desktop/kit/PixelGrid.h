// Cells of one size in device pixels, a gap apart, filled column by column.
#pragma once

#include <QPoint>
#include <QRect>
#include <QSize>
#include <algorithm>

namespace vel {

/// At least one, else rounded down. `ratio` is device pixels per point.
[[nodiscard]] inline int pixels(int points, double ratio) {
  return std::max(1, static_cast<int>(points * ratio));
}

/// Of the whole, for each of so many parts that are a gap apart.
[[nodiscard]] inline int share(int whole, int parts, int gap) {
  return (whole + gap) / parts - gap;
}

struct PixelGrid {
  int cells = 0;
  int rows = 1;
  int width = 0;  ///< of a cell
  int height = 0;
  int columnGap = 0;
  int rowGap = 0;

  [[nodiscard]] int columns() const { return (cells + rows - 1) / rows; }

  /// Of a cell in the grid, which is centred in `area`.
  [[nodiscard]] QRect place(const QRect& area, int cell) const {
    const QSize used(columns() * (width + columnGap) - columnGap,
                     rows * (height + rowGap) - rowGap);
    const QSize unused = area.size() - used;
    const QPoint offset(unused.width() / 2 + cell / rows * (width + columnGap),
                        unused.height() / 2 + cell % rows * (height + rowGap));
    return {area.topLeft() + offset, QSize(width, height)};
  }
};

}  // namespace vel
