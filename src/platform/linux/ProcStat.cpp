// The text of /proc/stat.
#include "platform/linux/ProcStat.h"

#include <cstddef>

namespace vel {

namespace {

void skipSpaces(std::string_view& text) {
  while (takeCharacter(text, ' ')) {
  }
}

}  // namespace

std::optional<CpuLine> parseCpuLine(std::string_view line) {
  line.remove_prefix(std::string_view("cpu").size());
  CpuLine parsed;
  if (!takeInteger(line, parsed.cpu)) {
    return std::nullopt;
  }
  std::size_t count = 0;
  while (count < CpuLine::kColumns && takeCharacter(line, ' ')) {
    skipSpaces(line);
    if (!takeInteger(line, parsed.ticks[count])) {
      return std::nullopt;
    }
    ++count;
  }
  const bool whole = count >= CpuLine::kOldestColumns && (line.empty() || line.front() == ' ');
  return whole ? std::optional(parsed) : std::nullopt;
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
