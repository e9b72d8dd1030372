// The text of /proc/stat (man 5 proc; Documentation/filesystems/proc.rst, "Miscellaneous kernel
// statistics").
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/linux/CpuList.h"
#include "platform/linux/Scan.h"

namespace vel {

/// One processor's line: its cumulative time by what it was spent on, in clock ticks.
struct CpuLine {
  /// In the kernel's order. The first four were always there; guest and guest_nice, which follow,
  /// are inside user and nice already.
  enum Column : std::uint8_t { user, nice, system, idle, iowait, irq, softirq, steal };
  static constexpr std::size_t kColumns = 8;
  static constexpr std::size_t kOldestColumns = 4;

  std::int32_t cpu = 0;
  std::array<std::uint64_t, kColumns> ticks{};  ///< 0 where an old kernel has no such column
};

/// Whether `line` is one processor's: "cpu3 …", as against "cpu  …", the sum of them.
inline bool isCpuLine(std::string_view line) {
  return line.size() > 3 && line.starts_with("cpu") && line[3] >= '0' && line[3] <= '9';
}

/// Reads a line for which `isCpuLine` holds, without its newline. Nothing when a number is missing,
/// is no number or does not fit.
std::optional<CpuLine> parseCpuLine(std::string_view line);

/// Calls `visit(const CpuLine&)` for each processor's line in turn. False when a line is
/// malformed, the processors do not ascend as the kernel lists them, there is none, or nothing
/// follows them: the kernel's text goes on with other figures, so this one has been cut short.
/// `visit` may have been called before that came out.
template <typename Visit>
bool forEachCpu(std::string_view text, Visit visit) {
  std::int32_t last = -1;
  bool goesOn = false;
  while (const std::optional<std::string_view> line = takeLine(text)) {
    goesOn = !isCpuLine(*line);
    if (goesOn) {
      continue;
    }
    const std::optional<CpuLine> parsed = parseCpuLine(*line);
    if (!parsed || parsed->cpu <= last || parsed->cpu > CpuList::kMaxCpu) {
      return false;
    }
    last = parsed->cpu;
    visit(*parsed);
  }
  return last >= 0 && goesOn;
}

/// When the machine was started, in seconds since 1970-01-01 00:00 UTC.
std::optional<std::int64_t> parseBootTime(std::string_view text);

}  // namespace vel
