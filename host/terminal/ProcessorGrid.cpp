#include "host/terminal/ProcessorGrid.h"

#include <algorithm>
#include <cstddef>

#include "host/terminal/Line.h"
#include "host/terminal/Text.h"

namespace vel {
namespace {

/// Beside the label: a space, "100 %", a space and the shortest gauge that still says something.
constexpr int kLeastCell = 1 + 5 + 1 + 4;

int dividedUp(int dividend, int divisor) {
  return (dividend + divisor - 1) / divisor;
}

ProcessorGrid folded(std::span<const std::int32_t> numbers, int fold) {
  ProcessorGrid grid;
  grid.numbers = numbers;
  grid.fold = fold;
  grid.gauges = dividedUp(static_cast<int>(numbers.size()), fold);
  // The last gauge may have fewer processors and a shorter label than the one before.
  grid.labelWidth = std::max(widthOf(grid.label(grid.gauges - 1)),
                             widthOf(grid.label(std::max(0, grid.gauges - 2))));
  return grid;
}

int mostColumns(const ProcessorGrid& grid, int width) {
  return (width + kGap) / (grid.labelWidth + kLeastCell + kGap);
}

}  // namespace

std::optional<ProcessorGrid> ProcessorGrid::plan(std::span<const std::int32_t> numbers, int width,
                                                 int rows) {
  const auto processors = static_cast<int>(numbers.size());
  for (int fold = 1; processors > 0 && rows > 0 && (fold == 1 || fold < processors); fold *= 2) {
    ProcessorGrid grid = folded(numbers, fold);
    grid.columns = dividedUp(grid.gauges, rows);
    if (grid.columns <= mostColumns(grid, width)) {
      grid.rows = dividedUp(grid.gauges, grid.columns);
      grid.cellWidth = (width + kGap) / grid.columns - kGap;
      return grid;
    }
  }
  return std::nullopt;
}

std::optional<int> ProcessorGrid::rowsUnfolded(std::span<const std::int32_t> numbers, int width) {
  const auto processors = static_cast<int>(numbers.size());
  const int columns = processors > 0 ? mostColumns(folded(numbers, 1), width) : 0;
  return columns > 0 ? std::optional(dividedUp(processors, columns)) : std::nullopt;
}

int ProcessorGrid::endProcessor(int gauge) const {
  return std::min(static_cast<int>(numbers.size()), firstProcessor(gauge) + fold);
}

std::wstring ProcessorGrid::label(int gauge) const {
  const auto numberAt = [this](int position) {
    return numbers[static_cast<std::size_t>(position)];
  };
  const std::int32_t first = numberAt(firstProcessor(gauge));
  const std::int32_t last = numberAt(endProcessor(gauge) - 1);
  return first == last ? std::to_wstring(first)
                       : std::to_wstring(first) + L"-" + std::to_wstring(last);
}

}  // namespace vel
