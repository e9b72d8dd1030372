// What a row of gauges looks like, in device pixels. Two equal pictures paint the same.
#pragma once

#include <QRect>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/host/VELGaugeViewMultiple.h"

namespace vel {

enum class GaugeStyle : std::uint8_t { bar = 1, pie = 2, segments = 3, ring = 4 };

/// A type that there is no style for is the nearest one.
[[nodiscard]] GaugeStyle gaugeStyle(std::int64_t type);

/// A gauge has a cell of its own up to 64 gauges. Beyond, neighbours share a cell, which shows the
/// highest of them.
inline constexpr int kMaximumGaugeCells = 64;

/// The width in points that suits so many gauges, a gap included; 0 for none, never above 256.
///
/// | gauges   | bar, segments: width + gap | pie, ring: diameter + gap    |
/// |----------|----------------------------|------------------------------|
/// | 1        | 10                         | 16 + 2                       |
/// | up to 4  | 7 + 2                      | 16 + 2                       |
/// | up to 8  | 6 + 2                      | 12 + 2                       |
/// | up to 16 | 5 + 1                      | 7 + 1 in two rows            |
/// | up to 32 | 4 + 1                      | 7 + 1 in two rows            |
/// | more     | 3 + 1                      | 7 + 1 in two rows            |
///
/// Two rows are filled column by column: the two threads of a core stand above each other.
[[nodiscard]] int gaugesWidth(std::int64_t type, std::size_t number);

struct GaugePicture {
  struct Cell {
    QRect place;
    /// 0 to `steps`: filled rows of pixels, lit segments, or pixels along the edge of a disc.
    int level = 0;
    Color color;
    bool operator==(const Cell&) const = default;
  };

  GaugeStyle style = GaugeStyle::bar;
  int line = 1;  ///< thickness of an outline
  /// Of bars and pies. Too small for an outline, they are on a faint track.
  bool isOutlined = false;
  // Of that style only.
  int segmentHeight = 0;
  int segmentPitch = 0;  ///< the gap included
  int steps = 0;         ///< the level of 100 percent, the same for all cells
  Color outer;
  std::vector<Cell> cells;

  bool operator==(const GaugePicture&) const = default;

  /// Lays the gauges out within `area`, in device pixels, as large as they fit. Where they get too
  /// small to be read, neighbours share a cell here too. `ratio` is device pixels per point.
  void layOut(const QRect& area, double ratio, std::int64_t type,
              const std::vector<VELGaugeViewMultiple::Gauge>& gauges, const Color& outerColor);

  /// Of a bar: what it fills at 100 percent.
  [[nodiscard]] QRect barArea(const Cell& cell) const;
};

}  // namespace vel
