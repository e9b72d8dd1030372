// What a graph of the load over time looks like, in device pixels.
#pragma once

#include <QRect>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/host/VELGraphArrays.h"

namespace vel {

/// A chart tells the load by its height, a lane by its intensity.
enum class GraphStyle : std::uint8_t { charts, lanes };

/// A cell for each series, the latest sample at its right edge. As many charts as are readable in
/// the area; else lanes. Where even these do not fit, neighbours share a lane, which shows the
/// highest of them.
struct GraphPicture {
  struct Sample {
    /// 0 to `steps`: rows of pixels, or the intensity. Below 0 for none.
    int level = kNone;
    bool isHigh = false;
    bool operator==(const Sample&) const = default;
  };
  static constexpr int kNone = -1;

  GraphStyle style = GraphStyle::charts;
  QRect frame;           ///< of all cells
  int line = 1;          ///< thickness
  bool hasRule = false;  ///< charts, at half their height
  int sampleWidth = 1;
  int samplesPerCell = 0;  ///< the earliest of them may have less room than the others, or none
  int steps = 0;
  std::vector<QRect> cells;
  std::vector<Sample> samples;  ///< cell by cell, the latest first

  bool operator==(const GraphPicture&) const = default;

  /// Of the first so many series within `area`, in device pixels; `ratio` is device pixels per
  /// point. `top` is the value at full height. One below 0 or none is shown as 0, one above `top`
  /// as `top`. Without a history, or with a `top` that is not above 0, there are no cells.
  void layOut(const QRect& area, double ratio, const VELGraphArraysMultiple* history,
              std::size_t number, float top);

 private:
  void fill(const VELGraphArraysMultiple& history, std::size_t number, float top);
};

}  // namespace vel
