#include "host/desktop/kit/GaugePicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace vel {

namespace {

/// Cells of one size, a gap apart, filled column by column.
struct Grid {
  int cells = 0;
  int rows = 1;
  int width = 0;
  int height = 0;
  int gap = 0;
};

bool isRound(GaugeStyle style) {
  return style == GaugeStyle::pie || style == GaugeStyle::ring;
}

int rounded(double value) {
  return static_cast<int>(std::lround(value));
}

int gapInPoints(int cells) {
  return cells <= 8 ? 2 : 1;
}

int pixels(int points, double ratio) {
  return std::max(1, static_cast<int>(points * ratio));
}

int columnsIn(const Grid& grid) {
  return (grid.cells + grid.rows - 1) / grid.rows;
}

/// Of the whole, for each of so many parts that are a gap apart.
int share(int whole, int parts, int gap) {
  return (whole + gap) / parts - gap;
}

Grid columnGrid(const QSize& area, int cells, double ratio) {
  Grid grid{cells, 1, 0, area.height(), pixels(gapInPoints(cells), ratio)};
  grid.width = share(area.width(), cells, grid.gap);
  const int narrowest = pixels(2, ratio);
  if (grid.width < narrowest) {
    grid.gap = pixels(1, ratio);
    grid.cells = std::clamp((area.width() + grid.gap) / (narrowest + grid.gap), 1, cells);
    grid.width = share(area.width(), grid.cells, grid.gap);
  }
  return grid;
}

/// The number of rows that makes the discs largest.
Grid largestDiscs(const QSize& area, int cells, double ratio) {
  Grid best;
  for (int rows = 1; rows <= cells; ++rows) {
    Grid grid{cells, rows, 0, 0, pixels(gapInPoints(cells), ratio)};
    grid.width = std::min(share(area.width(), columnsIn(grid), grid.gap),
                          share(area.height(), rows, grid.gap));
    grid.height = grid.width;
    if (grid.width <= best.width) {
      break;
    }
    best = grid;
  }
  return best;
}

Grid discGrid(const QSize& area, int cells, double ratio) {
  const int smallest = pixels(5, ratio);
  Grid grid = largestDiscs(area, cells, ratio);
  while (grid.width < smallest && cells > 1) {
    grid = largestDiscs(area, --cells, ratio);
  }
  return grid;
}

double percent(float value) {
  return std::isnan(value) ? 0.0 : std::clamp(static_cast<double>(value), 0.0, 100.0);
}

/// The highest of the gauges that share a cell.
const VELGaugeViewMultiple::Gauge& highest(const std::vector<VELGaugeViewMultiple::Gauge>& gauges,
                                           std::size_t cell, std::size_t cells) {
  const auto at = [&](std::size_t index) {
    return gauges.begin() + static_cast<std::ptrdiff_t>(index * gauges.size() / cells);
  };
  return *std::max_element(at(cell), at(cell + 1), [](const auto& a, const auto& b) {
    return percent(a.value) < percent(b.value);
  });
}

}  // namespace

GaugeStyle gaugeStyle(std::int64_t type) {
  return static_cast<GaugeStyle>(std::clamp<std::int64_t>(type, 1, 4));
}

int gaugesWidth(std::int64_t type, std::size_t number) {
  const int cells = static_cast<int>(std::min<std::size_t>(number, kMaximumGaugeCells));
  if (isRound(gaugeStyle(type))) {
    if (cells <= 8) {
      return cells * (cells <= 4 ? 18 : 14);
    }
    return (cells + 1) / 2 * 8;
  }
  struct Width {
    int cells;
    int pitch;
  };
  static constexpr std::array<Width, 6> kWidths{
      {{1, 10}, {4, 9}, {8, 8}, {16, 6}, {32, 5}, {64, 4}}};
  return cells * std::find_if(std::begin(kWidths), std::end(kWidths), [cells](const Width& width) {
                   return cells <= width.cells;
                 })->pitch;
}

void GaugePicture::layOut(const QRect& area, double ratio, std::int64_t type,
                          const std::vector<VELGaugeViewMultiple::Gauge>& gauges,
                          const Color& outerColor) {
  style = gaugeStyle(type);
  line = pixels(1, ratio);
  segmentHeight = style == GaugeStyle::segments ? rounded(2 * ratio) : 0;
  segmentPitch = style == GaugeStyle::segments ? rounded(3 * ratio) : 0;
  outer = outerColor;
  isOutlined = false;
  steps = 0;
  cells.clear();
  if (gauges.empty() || area.isEmpty()) {
    return;
  }

  const int wanted = static_cast<int>(std::min<std::size_t>(gauges.size(), kMaximumGaugeCells));
  const Grid grid = isRound(style) ? discGrid(area.size(), wanted, ratio)
                                   : columnGrid(area.size(), wanted, ratio);
  if (grid.width <= 0) {
    return;
  }
  isOutlined = std::min(grid.width, grid.height) >= pixels(isRound(style) ? 10 : 5, ratio);
  const int usedWidth = columnsIn(grid) * (grid.width + grid.gap) - grid.gap;
  const int usedHeight = grid.rows * (grid.height + grid.gap) - grid.gap;
  const QPoint origin =
      area.topLeft() + QPoint((area.width() - usedWidth) / 2, (area.height() - usedHeight) / 2);
  cells.resize(static_cast<std::size_t>(grid.cells));
  for (int i = 0; i < grid.cells; ++i) {
    const QPoint offset(i / grid.rows * (grid.width + grid.gap),
                        i % grid.rows * (grid.height + grid.gap));
    cells[static_cast<std::size_t>(i)].place = {origin + offset, QSize(grid.width, grid.height)};
  }

  switch (style) {
    case GaugeStyle::bar:
      steps = barArea(cells.front()).height();
      break;
    case GaugeStyle::segments:
      steps = (grid.height + segmentPitch - segmentHeight) / segmentPitch;
      break;
    case GaugeStyle::pie:
    case GaugeStyle::ring:
      steps = rounded(std::numbers::pi * grid.width);
      break;
  }
  for (std::size_t i = 0; i < cells.size(); ++i) {
    const VELGaugeViewMultiple::Gauge& gauge = highest(gauges, i, cells.size());
    cells[i].level = rounded(percent(gauge.value) / 100.0 * steps);
    cells[i].color = gauge.innerColor;
  }
}

QRect GaugePicture::barArea(const Cell& cell) const {
  return isOutlined ? cell.place.adjusted(line, line, -line, -line) : cell.place;
}

}  // namespace vel
