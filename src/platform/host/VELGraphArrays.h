// The widget kit: histories of readings, for graphs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/windowing/NibObject.h"

namespace vel {

/// The history of a graph with one series. A nib may hold one; nothing feeds it.
class VELGraphArrays : public NibObject {
 public:
  static constexpr const char* kNibClass = "VELGraphArrays";
};

/// The history of a graph with a series per core. Each series keeps its latest values only; a
/// series appears with its first value.
class VELGraphArraysMultiple : public NibObject {
 public:
  static constexpr const char* kNibClass = "VELGraphArraysMultiple";

  /// Values a series keeps: five minutes at one a second.
  static constexpr std::size_t kCapacity = 300;
  /// An index at or beyond it is ignored.
  static constexpr std::int64_t kMaximumSeries = 4096;

  /// `value` in percent.
  void addNewValueForGraphAtIndex(float value, std::int64_t index);

  [[nodiscard]] std::size_t seriesCount() const { return series_.size(); }
  /// How many values the series has; 0 for one that does not exist.
  [[nodiscard]] std::size_t size(std::size_t series) const;
  /// `age` counts back from the latest value, which is 0, and is below `size(series)`.
  [[nodiscard]] float value(std::size_t series, std::size_t age) const;

 private:
  struct Series {
    std::vector<float> values;  ///< a ring once it is full
    std::size_t next = 0;       ///< where the next value goes
  };
  std::vector<Series> series_;
};

}  // namespace vel
