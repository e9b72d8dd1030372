#include "host/terminal/ProcessorGrid.h"

#include <algorithm>

#include "host/terminal/Text.h"

namespace vel {
namespace {

/// Beside the label: a space, "100 %", a space and the shortest gauge that still says something.
constexpr int kLeastCell = 1 + 5 + 1 + 4;

int dividedUp(int dividend, int divisor) {
  return (dividend + divisor - 1) / divisor;
}

ProcessorGrid folded(int processors, int fold) {
  ProcessorGrid grid;
  grid.processors = processors;
  grid.fold = fold;
  grid.gauges = dividedUp(processors, fold);
  // The last gauge may have fewer processors and a shorter label than the one before.
  grid.labelWidth = std::max(widthOf(grid.label(grid.gauges - 1)),
                             widthOf(grid.label(std::max(0, grid.gauges - 2))));
  return grid;
}

int mostColumns(const ProcessorGrid& grid, int width) {
  return (width + ProcessorGrid::kGap) / (grid.labelWidth + kLeastCell + ProcessorGrid::kGap);
}

}  // namespace

std::optional<ProcessorGrid> ProcessorGrid::plan(int processors, int width, int rows) {
  for (int fold = 1; processors > 0 && rows > 0 && (fold == 1 || fold < processors); fold *= 2) {
    ProcessorGrid grid = folded(processors, fold);
    grid.columns = dividedUp(grid.gauges, rows);
    if (grid.columns <= mostColumns(grid, width)) {
      grid.rows = dividedUp(grid.gauges, grid.columns);
      grid.cellWidth = (width + kGap) / grid.columns - kGap;
      return grid;
    }
  }
  return std::nullopt;
}

std::optional<int> ProcessorGrid::rowsUnfolded(int processors, int width) {
  const int columns = processors > 0 ? mostColumns(folded(processors, 1), width) : 0;
  return columns > 0 ? std::optional(dividedUp(processors, columns)) : std::nullopt;
}

int ProcessorGrid::endProcessor(int gauge) const {
  return std::min(processors, firstProcessor(gauge) + fold);
}

std::wstring ProcessorGrid::label(int gauge) const {
  const int first = firstProcessor(gauge);
  const int last = endProcessor(gauge) - 1;
  return first == last ? std::to_wstring(first)
                       : std::to_wstring(first) + L"-" + std::to_wstring(last);
}

}  // namespace vel
