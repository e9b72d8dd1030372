// What the displays show of the record of readings.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include "host/terminal/RunningProcessors.h"
#include "platform/foundation/GregorianCalendar.h"
#include "platform/host/CPUData.h"

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
  std::vector<float> processors;      ///< the total of each running logical processor, by number
  std::vector<std::int32_t> numbers;  ///< the kernel's, of the same

  std::array<std::optional<float>, 3> load;  ///< over 1, 5 and 15 minutes
  std::optional<float> tasks;
  std::optional<float> threads;
  std::optional<CalendarDifference> upTime;

  /// Overwrites everything. Processors that the record does not have are left out.
  void read(const CPUData& record, const std::vector<RunningProcessor>& running);
};

}  // namespace vel
