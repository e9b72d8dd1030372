// What the displays show of the record of readings.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/foundation/GregorianCalendar.h"
#include "platform/host/CPUData.h"
#include "platform/kernel/Kernel.h"

namespace vel {

/// Nothing where the record has no reading, or one that is not finite. Shares are fractions from 0
/// to 1.
struct Readings {
  using Share = std::optional<float>;

  /// Everything but idle.
  [[nodiscard]] Share total() const;

  Share user;
  Share system;
  Share nice;
  Share idle;
  std::vector<float> processors;  ///< the total of each running logical processor

  std::array<std::optional<float>, 3> load;  ///< over 1, 5 and 15 minutes
  std::optional<float> tasks;
  std::optional<float> threads;
  std::optional<CalendarDifference> upTime;

  /// Overwrites everything. The record has entries for all present processors, the running ones
  /// first, and leaves it to the reader to know how many run.
  void read(const CPUData& record, std::optional<std::uint32_t> runningProcessors);
};

}  // namespace vel
