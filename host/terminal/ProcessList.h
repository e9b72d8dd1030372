// The processes that use the processors most, as the record of readings lists them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include "platform/host/CPUData.h"

namespace vel {

struct ProcessList {
  /// The most that the module lists.
  static constexpr std::size_t kMost = 5;

  /// What they are ranked by; `unknown` where the module does not say.
  enum class Ranking : std::uint8_t { unknown, averageSinceStart, now };

  Ranking ranking = Ranking::unknown;
  std::vector<ProcessEntry> entries;  ///< heaviest first

  /// Overwrites everything. `type` is a value of `broadcast::top5Type`.
  void read(const CPUData& record, std::optional<std::int64_t> type);
};

}  // namespace vel
