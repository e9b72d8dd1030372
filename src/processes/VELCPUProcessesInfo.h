// Process accounting: the rankings of the processes that use the most CPU, and those above the
// alert threshold.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/host/CPUData.h"

namespace vel {

/// The model asks for a new reading of the process table, then for the lists that it needs. The
/// table is not read yet: every list is missing, which leaves the record of readings without it.
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
  virtual void getAllProcessInfos();

  /// At most five processes, by their share since the previous reading, heaviest first.
  virtual std::optional<std::vector<ProcessEntry>> getTop5CPUProccesses();

  /// At most five processes, by their average share since each started, heaviest first.
  virtual std::optional<std::vector<ProcessEntry>> getTop5CPUProccessesAvgSinceProcessStart();

  /// The pids, in decimal, of the processes above `notificationThreshold`; empty when that is 0.
  virtual std::optional<std::vector<std::string>> getCPUProccessesForNotification();

 private:
  float notificationThreshold_ = 0.0F;
};

}  // namespace vel
