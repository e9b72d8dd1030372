// The clock that the kernel dates the start of processes by.
#pragma once

#include <chrono>
#include <ctime>

namespace vel {

/// Since the machine was started, the time asleep included: CLOCK_BOOTTIME.
[[nodiscard]] inline std::chrono::nanoseconds bootTime() {
  timespec now = {};
  clock_gettime(CLOCK_BOOTTIME, &now);
  return std::chrono::seconds(now.tv_sec) + std::chrono::nanoseconds(now.tv_nsec);
}

}  // namespace vel
