// A process's CPU clock.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>

namespace vel {

/// Nanoseconds of CPU time, user and system, of all threads of a process of our own pid namespace,
/// ended ones included; nothing when there is no such process. It needs no permission. Of a thread
/// that runs at this moment it is exact to the last scheduler tick.
inline std::optional<std::uint64_t> cpuClock(std::int32_t pid) {
  // The clock that clock_getcpuclockid(3) gives, which would ask the kernel for it once more:
  // CPUCLOCK_SCHED of the kernel's include/linux/posix-timers_types.h.
  const auto clock = static_cast<clockid_t>((~static_cast<std::uint32_t>(pid) << 3U) | 2U);
  timespec time = {};
  if (::clock_gettime(clock, &time) != 0) {
    return std::nullopt;
  }
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000U +
         static_cast<std::uint64_t>(time.tv_nsec);
}

}  // namespace vel
