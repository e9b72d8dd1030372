// Which loads a row of gauges or graphs shows: one total, or one per core.
#pragma once

#include <atomic>
#include <cstdint>
#include <optional>

#include "platform/host/CPUData.h"

namespace vel {

/// The settings and the core counts may be set on any thread: they arrive on that of whoever
/// reports them.
class DisplayedCores {
 public:
  /// 0 = one total, 1 = per physical core, 2 = per logical processor; others show nothing.
  void setType(std::int64_t type) { cpudisplayedcoretype_ = static_cast<std::int32_t>(type); }

  /// Returns whether the number of logical processors is another.
  bool setInformation(const CpuCoresInformation& information);

  /// How many loads there are to show; none if the type shows nothing.
  [[nodiscard]] std::optional<std::int64_t> count() const {
    return countFor(cpudisplayedcoretype_);
  }

  /// Calls `visit(load, index)` for every load, in order: user and system time as a fraction in
  /// single precision. A missing reading counts as 0, and so does every reading without a record.
  template <typename Visitor>
  void forEachLoad(const CPUData* record, Visitor visit) const {
    const std::int32_t type = cpudisplayedcoretype_;
    const std::int64_t loads = countFor(type).value_or(0);
    for (std::int64_t i = 0; i < loads; ++i) {
      visit(record == nullptr ? 0.0F : load(*record, type, static_cast<std::uint32_t>(i)), i);
    }
  }

 private:
  [[nodiscard]] std::optional<std::int64_t> countFor(std::int32_t type) const;
  static float load(const CPUData& record, std::int32_t type, std::uint32_t index);

  std::atomic<std::int32_t> cpudisplayedcoretype_ = 0;
  std::atomic<std::int64_t> numberOfLogicalCores_ = 0;
  std::atomic<std::int64_t> numberOfPhysicalCores_ = 0;
};

}  // namespace vel
