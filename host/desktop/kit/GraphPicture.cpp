#include "host/desktop/kit/GraphPicture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "host/desktop/kit/PixelGrid.h"

namespace vel {

namespace {

/// As for the gauges.
constexpr double kHighShare = 0.7;
/// More than the eye tells apart in a lane.
constexpr int kIntensities = 20;

// In points.
constexpr int kSmallestChartWidth = 24;
constexpr int kSmallestChartHeight = 8;
constexpr int kSmallestLaneWidth = 12;
constexpr int kSmallestRuledHeight = 12;
/// From there on a sample is two points wide, else one.
constexpr int kWideChart = 100;

// Width by height of the cell that is looked for.
constexpr double kChartAspect = 3.0;
constexpr double kLaneAspect = 8.0;

/// How well a grid shows its cells: the larger they are, of an aspect, the better, and the fewer
/// places are left empty.
double quality(const PixelGrid& grid, double aspect) {
  const double size = std::min(grid.width / aspect, static_cast<double>(grid.height));
  const double used = static_cast<double>(grid.cells) / (grid.rows * grid.columns());
  return size * used * used;
}

/// No width or height when there is none.
PixelGrid bestGrid(const QSize& area, int cells, int columnGap, int rowGap, double aspect) {
  PixelGrid best;
  std::pair<double, int> bestQuality;
  for (int rows = 1; rows <= std::min(cells, area.height()); ++rows) {
    PixelGrid grid{cells, rows, 0, 0, columnGap, rowGap};
    grid.width = share(area.width(), grid.columns(), columnGap);
    grid.height = share(area.height(), rows, rowGap);
    const std::pair gridQuality(quality(grid, aspect), grid.width * grid.height);
    if (gridQuality > bestQuality) {
      bestQuality = gridQuality;
      best = grid;
    }
  }
  return best;
}

/// Of a cell, as wide as it takes for the columns to fill the area.
QRect placeIn(const QRect& area, const PixelGrid& grid, int cell) {
  const auto left = [&](int column) {
    return area.left() + column * (area.width() + grid.columnGap) / grid.columns();
  };
  QRect place = grid.place(area, cell);
  place.setLeft(left(cell / grid.rows));
  place.setRight(left(cell / grid.rows + 1) - grid.columnGap - 1);
  return place;
}

PixelGrid chartGrid(const QSize& area, int cells, double ratio) {
  const int gap = pixels(2, ratio);
  const PixelGrid grid = bestGrid(area, cells, gap, gap, kChartAspect);
  const bool isReadable = cells == 1 || (grid.width >= pixels(kSmallestChartWidth, ratio) &&
                                         grid.height >= pixels(kSmallestChartHeight, ratio));
  return isReadable ? grid : PixelGrid();
}

PixelGrid laneGrid(const QSize& area, int cells, double ratio) {
  const int gap = pixels(3, ratio);
  const int columns = std::max(1, (area.width() + gap) / (pixels(kSmallestLaneWidth, ratio) + gap));
  const int fitting = std::min(cells, columns * area.height());
  const int line = pixels(1, ratio);
  const PixelGrid apart = bestGrid(area, fitting, gap, line, kLaneAspect);
  return apart.height > line ? apart : bestGrid(area, fitting, gap, 0, kLaneAspect);
}

/// 0 to 1.
double shareOf(float value, float top) {
  // In this order, infinity by infinity is 1.
  return value > 0.0F ? std::min(1.0, static_cast<double>(value) / static_cast<double>(top)) : 0.0;
}

}  // namespace

void GraphPicture::layOut(const QRect& area, double ratio, const VELGraphArraysMultiple* history,
                          std::size_t number, float top) {
  frame = area;
  line = pixels(1, ratio);
  cells.clear();
  samples.clear();
  if (area.isEmpty() || history == nullptr || number == 0 || !(top > 0.0F)) {
    return;
  }

  const int wanted = static_cast<int>(number);
  PixelGrid grid = chartGrid(area.size(), wanted, ratio);
  style = grid.cells > 0 ? GraphStyle::charts : GraphStyle::lanes;
  if (style == GraphStyle::lanes) {
    grid = laneGrid(area.size(), wanted, ratio);
  }
  steps = style == GraphStyle::charts ? grid.height : kIntensities;
  hasRule = style == GraphStyle::charts && grid.height >= pixels(kSmallestRuledHeight, ratio);
  const bool isWide = grid.width >= pixels(kWideChart, ratio);
  sampleWidth = pixels(isWide ? 2 : 1, ratio);
  samplesPerCell = grid.width / sampleWidth + 1;
  for (int i = 0; i < grid.cells; ++i) {
    cells.push_back(placeIn(area, grid, i));
  }
  fill(*history, number, top);
}

void GraphPicture::fill(const VELGraphArraysMultiple& history, std::size_t number, float top) {
  const auto perCell = static_cast<std::size_t>(samplesPerCell);
  samples.resize(cells.size() * perCell);
  for (std::size_t series = 0; series < number; ++series) {
    const std::size_t cell = ((series + 1) * cells.size() - 1) / number;
    const std::size_t size = std::min(history.size(series), perCell);
    for (std::size_t age = 0; age < size; ++age) {
      const double share = shareOf(history.value(series, age), top);
      Sample& sample = samples[cell * perCell + age];
      sample.level = std::max(sample.level, static_cast<int>(std::lround(share * steps)));
      sample.isHigh = sample.isHigh || share > kHighShare;
    }
  }
}

}  // namespace vel
