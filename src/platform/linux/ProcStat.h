// The text of /proc/stat (man 5 proc; Documentation/filesystems/proc.rst, "Miscellaneous kernel
// statistics").
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

#include "platform/linux/CpuList.h"
#include "platform/linux/Scan.h"

namespace vel {

/// One processor's cumulative time by what it was spent on, in clock ticks.
struct CpuTicks {
  std::int32_t cpu = 0;
  std::uint64_t user = 0;    ///< with guests' time inside
  std::uint64_t nice = 0;    ///< likewise
  std::uint64_t system = 0;  ///< interrupts and time stolen by the hypervisor inside
  std::uint64_t idle = 0;    ///< waiting for I/O inside
};

/// Whether `line` is one processor's: "cpu3 …", as against "cpu  …", the sum of them.
inline bool isCpuLine(std::string_view line) {
  return line.size() > 3 && line.starts_with("cpu") && line[3] >= '0' && line[3] <= '9';
}

/// Reads a line for which `isCpuLine` holds, without its newline. Nothing when a number is missing,
/// is no number or does not fit.
std::optional<CpuTicks> parseCpuLine(std::string_view line);

/// Calls `visit(const CpuTicks&)` for each processor's line in turn. False when a line is
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
    const std::optional<CpuTicks> ticks = parseCpuLine(*line);
    if (!ticks || ticks->cpu <= last || ticks->cpu > CpuList::kMaxCpu) {
      return false;
    }
    last = ticks->cpu;
    visit(*ticks);
  }
  return last >= 0 && goesOn;
}

/// When the machine was started, in seconds since 1970-01-01 00:00 UTC.
std::optional<std::int64_t> parseBootTime(std::string_view text);

}  // namespace vel
