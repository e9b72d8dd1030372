#include "host/terminal/HistoryGraph.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>

#include "host/terminal/UprightGauge.h"

namespace vel {
namespace {

constexpr int kComfortableWidth = 12;  ///< of a cell; narrower only where there are too many
constexpr int kLeastWidth = 5;         ///< of a cell; a shorter history says nothing
constexpr int kNarrowGap = 1;
/// As in the menu bar's item: above this percentage a load is red.
constexpr float kBusyPercentage = 70.0F;

int dividedUp(int dividend, int divisor) {
  return (dividend + divisor - 1) / divisor;
}

struct Grid {
  Grid(int series, int columns, int rows);

  int fold = 1;  ///< neighbouring series in a cell, a power of two
  int cells;
  int across;
  int down;
  int gap;
  int rowGap;
  int width;   ///< of a cell
  int height;  ///< of a cell
};

Grid::Grid(int series, int columns, int rows) : cells(series) {
  const int most = rows * std::max(1, (columns + kNarrowGap) / (kLeastWidth + kNarrowGap));
  while (cells > most) {
    fold *= 2;
    cells = dividedUp(series, fold);
  }
  across = std::clamp((columns + kGap) / (kComfortableWidth + kGap), 1, cells);
  down = std::min(dividedUp(cells, across), rows);
  across = dividedUp(cells, down);
  gap = across * (kLeastWidth + kGap) - kGap <= columns ? kGap : kNarrowGap;
  width = (columns + gap) / across - gap;
  rowGap = 2 * down - 1 <= rows ? 1 : 0;
  height = (rows + rowGap) / down - rowGap;
}

class Drawing {
 public:
  Drawing(const VELGraphMultiple& graph, int columns, int rows, bool blocks)
      : graph_(graph),
        history_(*graph.history()),
        series_(static_cast<int>(graph.numberOfGraphs())),
        grid_(series_, columns, rows),
        blocks_(blocks) {}

  [[nodiscard]] int rows() const {
    return grid_.down * (grid_.height + grid_.rowGap) - grid_.rowGap;
  }
  [[nodiscard]] Line line(int row) const;

 private:
  void appendCell(Line& line, int cell, int row) const;
  [[nodiscard]] std::optional<float> highest(int cell, int age) const;

  const VELGraphMultiple& graph_;
  const VELGraphArraysMultiple& history_;
  int series_;
  Grid grid_;
  bool blocks_;
};

Line Drawing::line(int row) const {
  Line line;
  const int cellAndGap = grid_.height + grid_.rowGap;
  const int cellRow = row / cellAndGap;
  const int rowInCell = row % cellAndGap;
  if (rowInCell == grid_.height) {
    return line;
  }
  for (int cell = cellRow; cell < grid_.cells; cell += grid_.down) {
    for (int i = 0; i < grid_.gap && cell != cellRow; ++i) {
      append(line, L' ', Tone::normal);
    }
    appendCell(line, cell, grid_.height - 1 - rowInCell);
  }
  return line;
}

/// `row` counts from the cell's bottom.
void Drawing::appendCell(Line& line, int cell, int row) const {
  for (int age = grid_.width - 1; age >= 0; --age) {
    const float value = highest(cell, age).value_or(0.0F);
    const float share = graph_.maxValue() > 0.0F ? value / graph_.maxValue() : 0.0F;
    const auto height = static_cast<float>(grid_.height * kUprightSteps);
    // In this order what is no number counts as 0.
    const auto filled = std::lround(std::min(std::max(0.0F, share), 1.0F) * height);
    const int steps = std::clamp(static_cast<int>(filled) - row * kUprightSteps, 0, kUprightSteps);
    if (steps > 0) {
      append(line, uprightGauge(steps, blocks_),
             value > kBusyPercentage ? Tone::busy : Tone::gauge);
    } else {
      append(line, row == 0 ? uprightGauge(0, blocks_) : L' ', Tone::faint);
    }
  }
}

std::optional<float> Drawing::highest(int cell, int age) const {
  std::optional<float> value;
  const int end = std::min((cell + 1) * grid_.fold, series_);
  for (int i = cell * grid_.fold; i < end; ++i) {
    const auto series = static_cast<std::size_t>(i);
    const auto at = static_cast<std::size_t>(age);
    if (at < history_.size(series)) {
      value = std::max(value.value_or(0.0F), history_.value(series, at));
    }
  }
  return value;
}

}  // namespace

std::vector<Line> historyGraph(const VELGraphMultiple& graph, int columns, int rows, bool blocks) {
  std::vector<Line> lines;
  if (graph.history() != nullptr && graph.numberOfGraphs() > 0) {
    const Drawing drawing(graph, columns, rows, blocks);
    for (int row = 0; row < drawing.rows(); ++row) {
      lines.push_back(drawing.line(row));
    }
  }
  return lines;
}

}  // namespace vel
