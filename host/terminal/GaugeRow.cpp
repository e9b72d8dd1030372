#include "host/terminal/GaugeRow.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "host/terminal/UprightGauge.h"

namespace vel {

Line gaugeRow(std::span<const Item::Gauge> gauges, int columns, bool blocks) {
  const std::size_t room = static_cast<std::size_t>(std::max(1, columns));
  const std::size_t fold = (gauges.size() + room - 1) / room;
  Line row;
  while (!gauges.empty()) {
    const auto sharing = gauges.first(std::min(fold, gauges.size()));
    const auto highest = *std::max_element(
        sharing.begin(), sharing.end(),
        [](const Item::Gauge& one, const Item::Gauge& other) { return one.share < other.share; });
    const auto steps = static_cast<int>(std::lround(highest.share * kUprightSteps));
    const Tone filled = highest.busy ? Tone::busy : Tone::gauge;
    append(row, uprightGauge(steps, blocks), steps == 0 ? Tone::faint : filled);
    gauges = gauges.subspan(sharing.size());
  }
  return row;
}

}  // namespace vel
