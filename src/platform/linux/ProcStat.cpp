// The text of /proc/stat.
#include "platform/linux/ProcStat.h"

#include <array>
#include <cstddef>

namespace vel {

namespace {

/// The columns in the kernel's order. The first four were always there; guest and guest_nice, which
/// follow, are inside user and nice already.
enum Column : std::uint8_t { user, nice, system, idle, iowait, irq, softirq, steal };
constexpr std::size_t kColumns = 8;
constexpr std::size_t kOldestColumns = 4;

void skipSpaces(std::string_view& text) {
  while (takeCharacter(text, ' ')) {
  }
}

}  // namespace

std::optional<CpuTicks> parseCpuLine(std::string_view line) {
  line.remove_prefix(std::string_view("cpu").size());
  CpuTicks ticks;
  if (!takeInteger(line, ticks.cpu)) {
    return std::nullopt;
  }
  std::array<std::uint64_t, kColumns> columns{};
  std::size_t count = 0;
  while (count < kColumns && takeCharacter(line, ' ')) {
    skipSpaces(line);
    if (!takeInteger(line, columns[count])) {
      return std::nullopt;
    }
    ++count;
  }
  if (count < kOldestColumns || !(line.empty() || line.front() == ' ')) {
    return std::nullopt;
  }
  ticks.user = columns[user];
  ticks.nice = columns[nice];
  ticks.system = columns[system] + columns[irq] + columns[softirq] + columns[steal];
  ticks.idle = columns[idle] + columns[iowait];
  return ticks;
}

std::optional<std::int64_t> parseBootTime(std::string_view text) {
  constexpr std::string_view kName = "btime ";
  while (std::optional<std::string_view> line = takeLine(text)) {
    if (line->starts_with(kName)) {
      line->remove_prefix(kName.size());
      std::int64_t seconds = 0;
      const bool whole = takeInteger(*line, seconds) && line->empty();
      return whole ? std::optional(seconds) : std::nullopt;
    }
  }
  return std::nullopt;
}

}  // namespace vel
