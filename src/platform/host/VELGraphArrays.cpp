#include "platform/host/VELGraphArrays.h"

namespace vel {

void VELGraphArraysMultiple::addNewValueForGraphAtIndex(float value, std::int64_t index) {
  if (index < 0 || index >= kMaximumSeries) {
    return;
  }
  const auto position = static_cast<std::size_t>(index);
  if (position >= series_.size()) {
    series_.resize(position + 1);
  }
  Series& series = series_[position];
  if (series.values.size() < kCapacity) {
    series.values.push_back(value);
  } else {
    series.values[series.next] = value;
  }
  series.next = (series.next + 1) % kCapacity;
}

std::size_t VELGraphArraysMultiple::size(std::size_t series) const {
  return series < series_.size() ? series_[series].values.size() : 0;
}

float VELGraphArraysMultiple::value(std::size_t series, std::size_t age) const {
  const Series& history = series_[series];
  return history.values[(history.next + kCapacity - 1 - age) % kCapacity];
}

}  // namespace vel
