// The sampling model: topology, CPU usage, load, uptime and the process lists, all written into one
// record of readings.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

#include "model/Ticks.h"
#include "platform/foundation/GregorianCalendar.h"
#include "platform/foundation/Notification.h"
#include "platform/foundation/Property.h"
#include "platform/host/CPUData.h"
#include "platform/kernel/Kernel.h"
#include "processes/VELCPUProcessesInfo.h"

namespace vel {

/// Reaches the machine through the installed `Platform`. All update operations run on the one
/// thread that refreshes. A reading that fails leaves the record's earlier value in place; only the
/// shares per processor are reset by every sample.
class VELModuleModel {
 public:
  explicit VELModuleModel(
      std::unique_ptr<VELCPUProcessesInfo> processInfo = std::make_unique<VELCPUProcessesInfo>());
  ~VELModuleModel();
  VELModuleModel(const VELModuleModel&) = delete;
  VELModuleModel& operator=(const VELModuleModel&) = delete;

  // The four updates exclude each other: one that is called while another runs does nothing.

  /// CPU shares, uptime, load averages, task and thread counts.
  void updateModel();
  /// A new reading of the process table, and from it the top five of the chosen mode.
  void updateTopProcess();
  /// The alert list, from the table that `updateTopProcess` has just read.
  void updateTopProcessExtraNotif();
  /// A new reading of the process table, and from it the alert list.
  void updateProcessOnlyNotif();

  /// Reads the processor counts anew.
  CpuCoresInformation cpuCoresInformation();

  /// The alert threshold in percent of one core; 0 until one is set.
  [[nodiscard]] float currentThresholdValue() const;
  void setCurrentThresholdValue(float percent);

  /// 0 = average since each process started, 1 = share since the previous reading; others select no
  /// list.
  [[nodiscard]] std::int64_t top5ProcessesType() const { return top5processesType_; }

  /// The record, for whoever wants to be bound to it. It is one and the same for the model's
  /// lifetime.
  Property<const CPUData*>& cpuData() { return cpuDataProperty_; }
  [[nodiscard]] const CPUData& record() const { return CPUData_; }

  [[nodiscard]] bool isStatusViewVisible() const { return isStatusViewVisible_; }
  [[nodiscard]] bool isStatusCompactViewVisible() const { return isStatusCompactViewVisible_; }
  [[nodiscard]] bool isStatusExpandedViewVisible() const { return isStatusExpandedViewVisible_; }
  [[nodiscard]] bool isNotificationCenterViewVisible() const {
    return isNotificationCenterViewVisible_;
  }
  void setIsStatusViewVisible(bool visible) { isStatusViewVisible_ = visible; }
  void setIsStatusCompactViewVisible(bool visible) { isStatusCompactViewVisible_ = visible; }
  void setIsStatusExpandedViewVisible(bool visible) { isStatusExpandedViewVisible_ = visible; }
  void setIsNotificationCenterViewVisible(bool visible) {
    isNotificationCenterViewVisible_ = visible;
  }

 private:
  void registerNotification();
  void top5ProcessesTypeDidChange(const Notification& notification);
  void notificationThresholdDidChange(const Notification& notification);

  // Topology.
  void updateCoreInfo();
  bool checkIfCoreInfoNeedUpdate();

  // CPU usage.
  struct Core {
    explicit Core(std::uint32_t place = 0) : index(place) {}

    void add(const ProcessorState& state, const Ticks& gained, float gainedInAll) {
      number = state.core;
      ++processors;
      ticks += gained;
      total += gainedInAll;
    }

    std::uint32_t index;  ///< in the record
    std::int32_t number = ProcessorState::kNoCore;
    std::int64_t processors = 0;
    Ticks ticks;
    float total = 0.0F;  ///< summed like the counts, so that rounding cannot lift a share above 1
  };

  void updateCPUUsage();
  void resetProcessorShares();
  void writeShares(bool statesKnown);
  [[nodiscard]] bool beginsCore(const Core& current, const ProcessorState& state) const;
  void writeCoreShares(const Core& core);
  [[nodiscard]] Ticks ticksOf(std::size_t processor) const;

  void updateUpTime();
  void updateLoadInfo();
  void addDataForNotif();

  CPUData CPUData_;
  Property<const CPUData*> cpuDataProperty_{&CPUData_};
  std::unique_ptr<VELCPUProcessesInfo> velProcessInfo_;
  GregorianCalendar calendar_;
  bool isDataUpdating_ = false;
  std::int64_t top5processesType_ = 0;

  std::uint32_t numCPUs_ = 0;
  std::uint32_t numPhyCPU_ = 0;
  std::uint32_t numLogCPU_ = 0;
  std::int64_t modulophy_ = 1;  ///< logical processors per physical core

  TickSample cpuInfo_;
  TickSample prevCpuInfo_;
  bool hasPrevCpuInfo_ = false;
  std::vector<ProcessorState> processorStates_;
  std::mutex CPUUsageLock_;

  bool isStatusViewVisible_ = false;
  bool isStatusCompactViewVisible_ = false;
  bool isStatusExpandedViewVisible_ = false;
  bool isNotificationCenterViewVisible_ = false;
};

}  // namespace vel
