#include "host/desktop/kit/GaugePicture.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "host/desktop/kit/PixelGrid.h"

namespace vel {

namespace {

bool isRound(GaugeStyle style) {
  return style == GaugeStyle::pie || style == GaugeStyle::ring;
}

int rounded(double value) {
  return static_cast<int>(std::lround(value));
}

int gapInPoints(int cells) {
  return cells <= 8 ? 2 : 1;
}

PixelGrid columnGrid(const QSize& area, int cells, double ratio) {
  PixelGrid grid{cells, 1, 0, area.height(), pixels(gapInPoints(cells), ratio), 0};
  grid.width = share(area.width(), cells, grid.columnGap);
  const int narrowest = pixels(2, ratio);
  if (grid.width < narrowest) {
    grid.columnGap = pixels(1, ratio);
    grid.cells =
        std::clamp((area.width() + grid.columnGap) / (narrowest + grid.columnGap), 1, cells);
    grid.width = share(area.width(), grid.cells, grid.columnGap);
  }
  return grid;
}

/// The number of rows that makes the discs largest.
PixelGrid largestDiscs(const QSize& area, int cells, double ratio) {
  PixelGrid best;
  const int gap = pixels(gapInPoints(cells), ratio);
  for (int rows = 1; rows <= cells; ++rows) {
    PixelGrid grid{cells, rows, 0, 0, gap, gap};
    grid.width =
        std::min(share(area.width(), grid.columns(), gap), share(area.height(), rows, gap));
    grid.height = grid.width;
    if (grid.width <= best.width) {
      break;
    }
    best = grid;
  }
  return best;
}

PixelGrid discGrid(const QSize& area, int cells, double ratio) {
  const int smallest = pixels(5, ratio);
  PixelGrid grid = largestDiscs(area, cells, ratio);
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
  const PixelGrid grid = isRound(style) ? discGrid(area.size(), wanted, ratio)
                                        : columnGrid(area.size(), wanted, ratio);
  if (grid.width <= 0) {
    return;
  }
  isOutlined = std::min(grid.width, grid.height) >= pixels(isRound(style) ? 10 : 5, ratio);
  cells.resize(static_cast<std::size_t>(grid.cells));
  for (int i = 0; i < grid.cells; ++i) {
    cells[static_cast<std::size_t>(i)].place = grid.place(area, i);
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
