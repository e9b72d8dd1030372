// Process accounting: the table of processes, the rankings of those that use the most, and those
// above the alert threshold.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "platform/host/CPUData.h"
#include "platform/kernel/Kernel.h"
#include "processes/MemoryEntry.h"
#include "processes/PidMap.h"
#include "processes/ProcessTable.h"

namespace vel {

/// Reaches the machine through the installed `Platform`. All shares are of one core: several busy
/// threads make more than 1. Called from one thread at a time.
class VELCPUProcessesInfo {
 public:
  VELCPUProcessesInfo() = default;
  virtual ~VELCPUProcessesInfo();
  VELCPUProcessesInfo(const VELCPUProcessesInfo&) = delete;
  VELCPUProcessesInfo& operator=(const VELCPUProcessesInfo&) = delete;

  /// The CPU alert threshold in percent of one core; 0 means that none has been set.
  [[nodiscard]] float notificationThreshold() const { return notificationThreshold_; }
  void setNotificationThreshold(float percent) { notificationThreshold_ = percent; }

  /// Reads the process table anew; the shares of the lists cover the time since the reading before.
  /// A reading that fails leaves an empty table, and the next one nothing to be compared with.
  virtual void getAllProcessInfos();

  // From the latest reading; of an empty table all lists are empty. None is ever missing.

  /// At most five processes that have run for more than 10 seconds, by their share since the
  /// previous reading, heaviest first. The share is written like "37.5%".
  virtual std::optional<std::vector<ProcessEntry>> getTop5CPUProccesses();

  /// At most five processes that have run for more than 30 seconds, by their average share since
  /// each started, heaviest first. The share is written in percent, but without the sign: "12.0".
  virtual std::optional<std::vector<ProcessEntry>> getTop5CPUProccessesAvgSinceProcessStart();

  /// The pids, in decimal and no particular order, of the processes whose share since the previous
  /// call of this is above `notificationThreshold`; empty when that is 0. One that was not there
  /// then, or is another by now, is not among them.
  virtual std::optional<std::vector<std::string>> getCPUProccessesForNotification();

  /// At most five processes by their resident memory, heaviest first. Among them may be one that is
  /// in the table for its children's sake, whose name is "-".
  [[nodiscard]] std::vector<MemoryEntry> getTop5MemoryProccesses() const;

  /// Such as "512 MB" or, from 1024 MB on, "1.5 GB", in powers of 1024. The units' wording comes
  /// from the host's "Localizable" table.
  [[nodiscard]] std::string doubleCapacityDiskToString(double bytes) const;

  // What `getAllProcessInfos` is made of.

  /// Overwrites `table` with the processes of now, without their figures. False, with the table
  /// empty, when they cannot be listed.
  bool ProcessesInformation(ProcessTable& table);

  /// Adds the shares to the entries that the reading before had too. Nothing is clamped: a share is
  /// negative when the kernel's figures step back, and any number when the pid has gone to another
  /// process.
  void caculateDelta(ProcessTable& newSnapshot) const;

  [[nodiscard]] const ProcessTable& allProcInfos() const { return allProcInfos_; }

  // What is not known is -1, or nothing.

  [[nodiscard]] std::int32_t ParentPIDForProcess(std::int32_t pid) const;
  [[nodiscard]] std::int32_t ProcessID() const;
  [[nodiscard]] std::optional<std::string> ProcessName() const;
  [[nodiscard]] int ProcessStatus() const;  ///< the kernel's code
  [[nodiscard]] std::int32_t ParentPID() const;

 private:
  /// Of a top-level process, what a later reading is compared with.
  struct Usage {
    double runningTime = 0.0;
    double totalCPUTime = 0.0;
  };
  using UsageTable = PidMap<Usage>;

  void remember(UsageTable& usage) const;
  static float shareSince(const Usage& before, const ProcessTable::Entry& entry);

  float notificationThreshold_ = 0.0F;
  ProcessTable allProcInfos_;
  UsageTable previousUsage_;
  UsageTable checkedUsage_;  ///< as the latest alert list has found it
  double readAt_ = 0.0;      ///< the clock's, as is the next
  double checkedAt_ = 0.0;
  std::vector<ProcessRecord> records_;  ///< kept for its storage only
};

}  // namespace vel
