// Picks the five heaviest of any number of entries.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "processes/ProcessTable.h"

namespace vel {

/// The entries must outlive it. Among equal weights the one that was offered first ranks first.
class TopFive {
 public:
  /// A weight that is not a number ranks behind all others.
  void offer(const ProcessTable::Entry& entry, float weight);

  /// Heaviest first.
  [[nodiscard]] std::span<const ProcessTable::Entry* const> entries() const {
    return {entries_.data(), count_};
  }

 private:
  static constexpr std::size_t kSize = 5;

  std::array<const ProcessTable::Entry*, kSize> entries_{};
  std::array<float, kSize> weights_{};
  std::size_t count_ = 0;
};

}  // namespace vel
