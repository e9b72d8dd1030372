#include "processes/VELCPUProcessesInfo.h"

#include <cmath>
#include <cstddef>
#include <string_view>

#include "platform/Platform.h"
#include "processes/TopFive.h"

namespace vel {
namespace {

using Entry = ProcessTable::Entry;

constexpr std::int32_t kUnknown = -1;

/// The first process, whose children are applications and services rather than somebody's helpers.
constexpr std::int32_t kFirstProcess = 1;

/// Returns the CPU time, in nanoseconds.
std::uint64_t addFigures(Entry& entry, std::int32_t pid, Kernel& kernel) {
  const std::optional<TaskFigures> figures = kernel.taskFigures(pid);
  if (!figures) {
    return 0;
  }
  entry.residentSize += static_cast<float>(figures->residentBytes);
  entry.virtualSize += static_cast<float>(figures->virtualBytes);
  entry.threads += figures->threads;
  entry.processes += 1;
  return figures->userNanoseconds + figures->systemNanoseconds;
}

void account(ProcessTable& table, Kernel& kernel) {
  for (Entry& entry : table.entries()) {
    // Whole numbers, whose sum is the same in any order: a share of -0.0 % would be one of
    // rounding.
    std::uint64_t nanoseconds = addFigures(entry, entry.pid, kernel);
    table.forEachChild(
        entry, [&](std::int32_t child) { nanoseconds += addFigures(entry, child, kernel); });
    entry.totalCPUTime = static_cast<double>(nanoseconds) / 1e9;
  }
}

std::string nameText(const Entry& entry) {
  if (!entry.isTopLevel()) {
    return "-";
  }
  std::optional<std::string> name = Platform::current().kernel.processName(entry.pid);
  return name ? std::move(*name) : std::string(entry.name());
}

float currentShare(const Entry& entry) {
  return entry.CPUDynamic.value_or(0.0F);
}

float averageShare(const Entry& entry) {
  return static_cast<float>(entry.totalCPUTime / entry.runningTime);
}

/// The heaviest by `share` of the processes that have run for more than `seconds`, which no entry
/// without a running time has.
std::vector<ProcessEntry> rankByShare(const ProcessTable& table, float (*share)(const Entry&),
                                      double seconds, std::string_view unit) {
  TopFive top;
  for (const Entry& entry : table.entries()) {
    if (entry.runningTime > seconds) {
      top.offer(entry, share(entry));
    }
  }
  const Locale& locale = Platform::current().locale;
  std::vector<ProcessEntry> rows;
  rows.reserve(top.entries().size());
  for (const Entry* const entry : top.entries()) {
    const float fraction = share(*entry);
    rows.push_back({.name = nameText(*entry),
                    .pid = std::to_string(entry->pid),
                    .avgCpuTime = locale.number(fraction * 100.0F, 1).append(unit),
                    .share = fraction,
                    .processes = entry->processes});
  }
  return rows;
}

}  // namespace

VELCPUProcessesInfo::~VELCPUProcessesInfo() = default;

// --- Reading ---

void VELCPUProcessesInfo::getAllProcessInfos() {
  remember(previousUsage_);
  ProcessesInformation(allProcInfos_);
  account(allProcInfos_, Platform::current().kernel);
  caculateDelta(allProcInfos_);
}

void VELCPUProcessesInfo::remember(UsageTable& usage) const {
  usage.clear(allProcInfos_.entries().size());
  for (const Entry& entry : allProcInfos_.entries()) {
    if (entry.isTopLevel()) {
      usage.findOrAdd(entry.pid,
                      {.runningTime = entry.runningTime, .totalCPUTime = entry.totalCPUTime});
    }
  }
}

float VELCPUProcessesInfo::shareSince(const Usage& before, const Entry& entry) {
  return static_cast<float>((entry.totalCPUTime - before.totalCPUTime) /
                            (entry.runningTime - before.runningTime));
}

bool VELCPUProcessesInfo::ProcessesInformation(ProcessTable& table) {
  const Platform& platform = Platform::current();
  if (!platform.kernel.listProcesses(records_)) {
    table.clear();
    return false;
  }
  table.clear(records_.size());
  const double now = platform.clock.now();
  readAt_ = now;
  for (std::size_t i = records_.size(); i-- > 0;) {
    const ProcessRecord& record = records_[i];
    if (record.name().empty()) {
      continue;
    }
    const std::int32_t parent = ParentPIDForProcess(record.pid);
    if (parent <= kFirstProcess) {
      table.addTopLevel(record.pid, record.command, now - static_cast<double>(record.startSeconds));
    } else {
      table.addChild(parent, record.pid);
    }
  }
  return true;
}

void VELCPUProcessesInfo::caculateDelta(ProcessTable& newSnapshot) const {
  for (Entry& entry : newSnapshot.entries()) {
    const Usage* const before = previousUsage_.find(entry.pid);
    if (before != nullptr && before->runningTime != entry.runningTime) {
      entry.CPUDynamic = shareSince(*before, entry);
    }
  }
}

// --- Lists ---

std::optional<std::vector<ProcessEntry>> VELCPUProcessesInfo::getTop5CPUProccesses() {
  return rankByShare(allProcInfos_, currentShare, 10.0, "%");
}

std::optional<std::vector<ProcessEntry>>
VELCPUProcessesInfo::getTop5CPUProccessesAvgSinceProcessStart() {
  return rankByShare(allProcInfos_, averageShare, 30.0, "");
}

std::optional<std::vector<std::string>> VELCPUProcessesInfo::getCPUProccessesForNotification() {
  std::vector<std::string> pids;
  if (notificationThreshold_ == 0.0F) {
    return pids;
  }
  // In double precision: single would round a bound such as 0.3 up to a share that is above it.
  const double bound = static_cast<double>(notificationThreshold_) / 100.0;
  const double passed = readAt_ - checkedAt_;
  for (const Entry& entry : allProcInfos_.entries()) {
    const Usage* const before = checkedUsage_.find(entry.pid);
    // Another process of that pid has another start, in whole seconds.
    const bool isSame = before != nullptr && passed > 0.0 &&
                        std::abs(entry.runningTime - before->runningTime - passed) < 0.5;
    if (isSame && static_cast<double>(shareSince(*before, entry)) > bound) {
      pids.push_back(std::to_string(entry.pid));
    }
  }
  remember(checkedUsage_);
  checkedAt_ = readAt_;
  return pids;
}

std::vector<MemoryEntry> VELCPUProcessesInfo::getTop5MemoryProccesses() const {
  TopFive top;
  for (const Entry& entry : allProcInfos_.entries()) {
    top.offer(entry, entry.residentSize);
  }
  std::vector<MemoryEntry> rows;
  rows.reserve(top.entries().size());
  for (const Entry* const entry : top.entries()) {
    rows.push_back({.name = nameText(*entry),
                    .pid = std::to_string(entry->pid),
                    .realSize = doubleCapacityDiskToString(entry->residentSize)});
  }
  return rows;
}

std::string VELCPUProcessesInfo::doubleCapacityDiskToString(double bytes) const {
  const Platform& platform = Platform::current();
  const double megabytes = bytes / 1'048'576.0;
  const bool inGigabytes = megabytes >= 1024.0;
  return platform.locale.number(inGigabytes ? megabytes / 1024.0 : megabytes, inGigabytes ? 1 : 0)
      .append(" ")
      .append(platform.mainBundle.localizedString(inGigabytes ? "GB" : "MB"));
}

// --- One process ---

std::int32_t VELCPUProcessesInfo::ParentPIDForProcess(std::int32_t pid) const {
  const std::optional<ProcessRecord> record = Platform::current().kernel.process(pid);
  return record && record->parent > 0 ? record->parent : kUnknown;
}

std::int32_t VELCPUProcessesInfo::ProcessID() const {
  const std::int32_t pid = Platform::current().kernel.ownPid();
  return pid > 0 ? pid : kUnknown;
}

std::optional<std::string> VELCPUProcessesInfo::ProcessName() const {
  const std::optional<ProcessRecord> record = Platform::current().kernel.process(ProcessID());
  return record && !record->name().empty() ? std::optional(std::string(record->name()))
                                           : std::nullopt;
}

int VELCPUProcessesInfo::ProcessStatus() const {
  const std::optional<ProcessRecord> record = Platform::current().kernel.process(ProcessID());
  return record && record->status > 0 ? record->status : kUnknown;
}

std::int32_t VELCPUProcessesInfo::ParentPID() const {
  return ParentPIDForProcess(ProcessID());
}

}  // namespace vel
