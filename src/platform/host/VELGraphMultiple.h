// The widget kit: a graph of the load over time, with one series or several.
#pragma once

#include <algorithm>
#include <cstdint>

#include "platform/host/VELGraphArrays.h"
#include "platform/windowing/View.h"

namespace vel {

/// Holds what the graph shows; the toolkit's own class draws it. A nib names the graph's history,
/// an object of the same nib, in the property "history". The history is appended to elsewhere,
/// which the graph is told by `setNeedsDisplay`.
class VELGraphMultiple : public View {
 public:
  static constexpr const char* kNibClass = "VELGraphMultiple";

  /// The top of the scale, in the history's unit; its bottom is 0.
  void setMaxValue(float value) {
    maxValue_ = value;
    setNeedsDisplay();
  }

  /// How many series of the history are drawn, from the first. A number outside 0 to
  /// `VELGraphArraysMultiple::kMaximumSeries` counts as the nearer of these.
  void setNumberOfGraphs(std::int64_t number) {
    numberOfGraphs_ = std::clamp(number, std::int64_t{0}, VELGraphArraysMultiple::kMaximumSeries);
    setNeedsDisplay();
  }

  /// Null for none. Outlives the graph.
  void setHistory(const VELGraphArraysMultiple* history) { history_ = history; }

  [[nodiscard]] float maxValue() const { return maxValue_; }
  [[nodiscard]] std::int64_t numberOfGraphs() const { return numberOfGraphs_; }
  [[nodiscard]] const VELGraphArraysMultiple* history() const { return history_; }

 private:
  float maxValue_ = 100.0F;
  std::int64_t numberOfGraphs_ = 1;
  const VELGraphArraysMultiple* history_ = nullptr;
};

}  // namespace vel
