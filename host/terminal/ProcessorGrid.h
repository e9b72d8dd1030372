// How the processors' gauges share a piece of the screen.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>

namespace vel {

/// Cells of equal width, filled from top to bottom and then from left to right.
struct ProcessorGrid {
  std::span<const std::int32_t> numbers;  ///< the processors', ascending; they outlive the grid
  int fold = 1;                           ///< neighbouring processors in one gauge, a power of two
  int gauges = 0;
  int columns = 0;
  int rows = 0;
  int labelWidth = 0;
  int cellWidth = 0;

  /// The grid with the fewest processors in a gauge, and of those the one with the widest gauges.
  /// Nothing if there is no room for more than one gauge of several processors.
  static std::optional<ProcessorGrid> plan(std::span<const std::int32_t> numbers, int width,
                                           int rows);

  /// The least number of rows in which each processor has a gauge of its own; nothing if `width`
  /// has no room for one.
  static std::optional<int> rowsUnfolded(std::span<const std::int32_t> numbers, int width);

  /// Positions among `numbers`.
  [[nodiscard]] int firstProcessor(int gauge) const { return gauge * fold; }
  [[nodiscard]] int endProcessor(int gauge) const;

  /// The processor's number, or the first and the last one's for several: "3", "0-3".
  [[nodiscard]] std::wstring label(int gauge) const;
};

}  // namespace vel
