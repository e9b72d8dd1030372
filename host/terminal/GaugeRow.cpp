#include "host/terminal/GaugeRow.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace vel {
namespace {

// Indexed by the number of filled eighths.
constexpr std::wstring_view kBlocks = L"·▁▂▃▄▅▆▇█";
constexpr std::wstring_view kAscii = L".:-=+*#%@";
constexpr float kEighths = 8.0F;

void append(Line& row, wchar_t character, Tone tone) {
  if (row.empty() || row.back().tone != tone) {
    row.push_back({{}, tone});
  }
  row.back().text += character;
}

}  // namespace

Line gaugeRow(std::span<const Item::Gauge> gauges, int columns, bool blocks) {
  const std::size_t room = static_cast<std::size_t>(std::max(1, columns));
  const std::size_t fold = (gauges.size() + room - 1) / room;
  Line row;
  while (!gauges.empty()) {
    const auto sharing = gauges.first(std::min(fold, gauges.size()));
    const auto highest = *std::max_element(
        sharing.begin(), sharing.end(),
        [](const Item::Gauge& one, const Item::Gauge& other) { return one.share < other.share; });
    const auto eighths = static_cast<std::size_t>(std::lround(highest.share * kEighths));
    const Tone filled = highest.busy ? Tone::busy : Tone::gauge;
    append(row, (blocks ? kBlocks : kAscii)[eighths], eighths == 0 ? Tone::faint : filled);
    gauges = gauges.subspan(sharing.size());
  }
  return row;
}

}  // namespace vel
