#include "model/VELModuleModel.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "platform/Platform.h"
#include "platform/host/Broadcasts.h"

namespace vel {
namespace {

/// Admits one update at a time.
class UpdateGuard {
 public:
  explicit UpdateGuard(bool& updating) : updating_(updating), admitted_(!updating) {
    updating_ = true;
  }
  ~UpdateGuard() {
    if (admitted_) {
      updating_ = false;
    }
  }
  UpdateGuard(const UpdateGuard&) = delete;
  UpdateGuard& operator=(const UpdateGuard&) = delete;

  [[nodiscard]] bool admitted() const { return admitted_; }

 private:
  bool& updating_;
  bool admitted_;
};

constexpr std::array kAllShares = {ProcessorReading::userCPUAll, ProcessorReading::systemCPUAll,
                                   ProcessorReading::idleCPUAll, ProcessorReading::niceCPUAll};
constexpr std::array kPhyShares = {ProcessorReading::userCPUPhy, ProcessorReading::systemCPUPhy,
                                   ProcessorReading::idleCPUPhy, ProcessorReading::niceCPUPhy};

void writeShare(CPUData& data, const std::array<ProcessorReading, 4>& keys, std::uint32_t index,
                const Ticks& ticks, float total) {
  data.set(keys[0], index, ticks.user / total);
  data.set(keys[1], index, ticks.system / total);
  data.set(keys[2], index, ticks.idle / total);
  data.set(keys[3], index, ticks.nice / total);
}

void writeMachineShares(CPUData& data, Ticks sum, std::uint32_t processors) {
  if (processors != 0) {
    sum /= static_cast<float>(processors);
  }
  const float total = sum.total();
  if (total == 0.0F) {
    return;
  }
  data.set(Reading::userCPU, sum.user / total);
  data.set(Reading::systemCPU, sum.system / total);
  data.set(Reading::idleCPU, sum.idle / total);
  data.set(Reading::niceCPU, sum.nice / total);
}

/// Whole logical processors per physical core, at least 1; a machine with some cores of two and
/// some of one has 1.
std::int64_t processorsPerCore(std::uint32_t logical, std::uint32_t physical) {
  if (physical == 0) {
    return 1;
  }
  const auto ratio = static_cast<float>(static_cast<double>(logical) / physical);
  return std::max<std::int64_t>(static_cast<std::int64_t>(ratio), 1);
}

}  // namespace

VELModuleModel::VELModuleModel(std::unique_ptr<VELCPUProcessesInfo> processInfo)
    : velProcessInfo_(std::move(processInfo)) {
  updateCoreInfo();
  registerNotification();
}

VELModuleModel::~VELModuleModel() {
  Platform::current().notificationCenter.removeObserver(this);
}

void VELModuleModel::registerNotification() {
  auto& center = Platform::current().notificationCenter;
  center.addObserver(this, broadcast::top5Type, [this](const Notification& notification) {
    top5ProcessesTypeDidChange(notification);
  });
  center.addObserver(
      this, broadcast::notificationThresholdDidChange,
      [this](const Notification& notification) { notificationThresholdDidChange(notification); });
}

void VELModuleModel::top5ProcessesTypeDidChange(const Notification& notification) {
  top5processesType_ = notification.integerValue();
}

void VELModuleModel::notificationThresholdDidChange(const Notification& notification) {
  setCurrentThresholdValue(static_cast<float>(notification.integerValue()));
}

float VELModuleModel::currentThresholdValue() const {
  return velProcessInfo_->notificationThreshold();
}

void VELModuleModel::setCurrentThresholdValue(float percent) {
  velProcessInfo_->setNotificationThreshold(percent);
}

void VELModuleModel::updateModel() {
  const UpdateGuard guard(isDataUpdating_);
  if (!guard.admitted()) {
    return;
  }
  updateCPUUsage();
  updateUpTime();
  updateLoadInfo();
}

// --- Topology ---

void VELModuleModel::updateCoreInfo() {
  auto& kernel = Platform::current().kernel;
  numCPUs_ = kernel.processorCount().value_or(1);
  numPhyCPU_ = kernel.physicalCoreCount().value_or(numPhyCPU_);
  numLogCPU_ = kernel.logicalProcessorCount().value_or(numLogCPU_);
  modulophy_ = processorsPerCore(numLogCPU_, numPhyCPU_);
}

bool VELModuleModel::checkIfCoreInfoNeedUpdate() {
  auto& platform = Platform::current();
  const auto old =
      std::exchange(numLogCPU_, platform.kernel.logicalProcessorCount().value_or(numLogCPU_));
  if (numLogCPU_ == old) {
    return false;
  }
  platform.notificationCenter.post(broadcast::needUpdateCoreInfo);
  return true;
}

CpuCoresInformation VELModuleModel::cpuCoresInformation() {
  updateCoreInfo();
  return {.logicalcpu = numLogCPU_, .physicalcpu = numPhyCPU_};
}

// --- CPU usage ---

void VELModuleModel::updateCPUUsage() {
  auto& kernel = Platform::current().kernel;
  const bool sampled = kernel.readTicks(cpuInfo_);
  const bool statesKnown = kernel.readProcessorStates(processorStates_);
  const bool changed = checkIfCoreInfoNeedUpdate();
  if (!sampled || changed) {
    return;
  }
  {
    const std::lock_guard lock(CPUUsageLock_);
    resetProcessorShares();
    writeShares(statesKnown);
  }
  std::swap(prevCpuInfo_, cpuInfo_);
  hasPrevCpuInfo_ = true;
}

void VELModuleModel::resetProcessorShares() {
  for (std::uint32_t i = 0; i < numCPUs_; ++i) {
    for (const auto& keys : {kAllShares, kPhyShares}) {
      for (const auto key : keys) {
        CPUData_.set(key, i, 0.0F);
      }
    }
  }
}

void VELModuleModel::writeShares(bool statesKnown) {
  const std::size_t processors =
      statesKnown ? std::min<std::size_t>(numCPUs_, processorStates_.size()) : 0;
  std::uint32_t running = 0;
  Ticks machine;
  Core core;
  for (std::size_t i = 0; i < processors; ++i) {
    const ProcessorState& state = processorStates_[i];
    if (!state.running) {
      continue;
    }
    if (running != 0 && beginsCore(core, state)) {
      writeCoreShares(core);
      core = Core(core.index + 1);
    }
    const Ticks ticks = ticksOf(i);
    const float total = ticks.total();
    machine += ticks;
    core.add(state, ticks, total);
    if (total != 0.0F) {
      writeShare(CPUData_, kAllShares, running, ticks, total);
    }
    ++running;
  }
  writeCoreShares(core);
  writeMachineShares(CPUData_, machine, numCPUs_);
}

/// Where it is not known who shares a core, so many neighbours count as one.
bool VELModuleModel::beginsCore(const Core& current, const ProcessorState& state) const {
  return state.core == ProcessorState::kNoCore ? current.processors == modulophy_
                                               : current.number != state.core;
}

/// A core's shares pool the ticks of its processors. One that may lack processors has none.
void VELModuleModel::writeCoreShares(const Core& core) {
  const bool whole = core.number != ProcessorState::kNoCore || core.processors == modulophy_;
  if (whole && core.total != 0.0F) {
    writeShare(CPUData_, kPhyShares, core.index, core.ticks, core.total);
  }
}

Ticks VELModuleModel::ticksOf(std::size_t processor) const {
  return hasPrevCpuInfo_ ? ticksBetween(prevCpuInfo_, cpuInfo_, processor)
                         : ticksSinceBoot(cpuInfo_, processor);
}

// --- Uptime and load ---

void VELModuleModel::updateUpTime() {
  const auto bootTime = Platform::current().kernel.bootTime();
  if (!bootTime) {
    return;
  }
  const std::lock_guard lock(CPUUsageLock_);
  const double boot = static_cast<double>(bootTime->seconds) + bootTime->microseconds / 1e6;
  CPUData_.setUpTime(calendar_.difference(boot, Platform::current().clock.now()));
}

void VELModuleModel::updateLoadInfo() {
  auto& kernel = Platform::current().kernel;
  if (const auto load = kernel.systemLoad()) {
    CPUData_.set(Reading::tasksCount, static_cast<float>(load->tasks));
    CPUData_.set(Reading::threadsCount, static_cast<float>(load->threads));
  }
  constexpr std::array kAverages = {Reading::loadAverage0, Reading::loadAverage1,
                                    Reading::loadAverage2};
  std::array<double, kAverages.size()> averages{};
  const int delivered = kernel.loadAverages(averages);
  for (std::size_t i = 0; std::cmp_less(i, delivered) && i < averages.size(); ++i) {
    CPUData_.set(kAverages[i], static_cast<float>(averages[i]));
  }
}

// --- Process lists ---

void VELModuleModel::updateTopProcess() {
  const UpdateGuard guard(isDataUpdating_);
  if (!guard.admitted()) {
    return;
  }
  velProcessInfo_->getAllProcessInfos();
  std::optional<std::vector<ProcessEntry>> list;
  if (top5processesType_ == 1) {
    list = velProcessInfo_->getTop5CPUProccesses();
  } else if (top5processesType_ == 0) {
    list = velProcessInfo_->getTop5CPUProccessesAvgSinceProcessStart();
  }
  if (list) {
    CPUData_.setTopMemProcess(std::move(*list));
  }
}

void VELModuleModel::updateTopProcessExtraNotif() {
  const UpdateGuard guard(isDataUpdating_);
  if (guard.admitted()) {
    addDataForNotif();
  }
}

void VELModuleModel::updateProcessOnlyNotif() {
  const UpdateGuard guard(isDataUpdating_);
  if (guard.admitted()) {
    velProcessInfo_->getAllProcessInfos();
    addDataForNotif();
  }
}

void VELModuleModel::addDataForNotif() {
  if (auto pids = velProcessInfo_->getCPUProccessesForNotification()) {
    CPUData_.setProcessesForNotification(std::move(*pids));
  }
}

}  // namespace vel
