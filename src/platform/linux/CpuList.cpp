// A set of processors as the kernel writes it: "0-3,5,7-9".
#include "platform/linux/CpuList.h"

#include <algorithm>
#include <optional>

#include "platform/linux/Scan.h"

namespace vel {

bool CpuList::parse(std::string_view text) {
  clear();
  const std::optional<std::string_view> line = onlyLine(text);
  if (line && parseRanges(*line)) {
    return true;
  }
  clear();
  return false;
}

bool CpuList::parseRanges(std::string_view line) {
  do {
    Range range;
    if (!takeInteger(line, range.first)) {
      return false;
    }
    range.last = range.first;
    if (takeCharacter(line, '-') && !takeInteger(line, range.last)) {
      return false;
    }
    if (!appendRange(range)) {
      return false;
    }
  } while (takeCharacter(line, ','));
  return line.empty();
}

bool CpuList::appendRange(Range range) {
  const std::int32_t lowest = empty() ? 0 : last() + 1;
  if (range.first < lowest || range.last < range.first || range.last > kMaxCpu) {
    return false;
  }
  if (!empty() && range.first == lowest) {
    ranges_.back().last = range.last;
  } else {
    ranges_.push_back(range);
  }
  return true;
}

void CpuList::append(std::int32_t cpu) {
  appendRange({.first = cpu, .last = cpu});
}

std::uint32_t CpuList::count() const {
  std::uint32_t count = 0;
  for (const Range& range : ranges_) {
    count += static_cast<std::uint32_t>(range.last - range.first + 1);
  }
  return count;
}

bool CpuList::contains(std::int32_t cpu) const {
  const auto range = std::partition_point(ranges_.begin(), ranges_.end(),
                                          [cpu](const Range& each) { return each.last < cpu; });
  return range != ranges_.end() && range->first <= cpu;
}

/// No two ranges touch, so each of the others lies within one.
bool CpuList::containsAll(const CpuList& others) const {
  return std::all_of(others.ranges_.begin(), others.ranges_.end(), [this](const Range& other) {
    return std::any_of(ranges_.begin(), ranges_.end(), [&other](const Range& range) {
      return range.first <= other.first && other.last <= range.last;
    });
  });
}

}  // namespace vel
