#include "host/terminal/ProcessList.h"

#include <algorithm>
#include <iterator>

namespace vel {
namespace {

ProcessList::Ranking rankingOf(std::optional<std::int64_t> type) {
  if (type == 0) {
    return ProcessList::Ranking::averageSinceStart;
  }
  return type == 1 ? ProcessList::Ranking::now : ProcessList::Ranking::unknown;
}

}  // namespace

void ProcessList::read(const CPUData& record, std::optional<std::int64_t> type) {
  ranking = rankingOf(type);
  const auto& listed = record.topMemProcess();
  if (listed) {
    const auto count = std::min(listed->size(), kMost);
    entries.assign(listed->begin(), std::next(listed->begin(), static_cast<std::ptrdiff_t>(count)));
  } else {
    entries.clear();
  }
}

}  // namespace vel
