// The system's processes, read again and again.
#include "platform/linux/ProcessReader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <utility>

#include "platform/linux/ControlGroup.h"
#include "platform/linux/CpuClock.h"

namespace vel {

namespace {

/// A process that has run in one of so many readings is likely to run again: its file stays open.
constexpr std::uint8_t kQuietReadings = 4;

constexpr std::int32_t kFirstProcess = 1;

bool isIn(const std::vector<std::int32_t>& sorted, std::int32_t pid) {
  return std::binary_search(sorted.begin(), sorted.end(), pid);
}

}  // namespace

ProcessReader::ProcessReader(ProcessDirectory& directory)
    : directory_(directory),
      // Captured files may have been put in the place of others.
      pool_(directory.onProcfs() ? DescriptorPool::fairSize() : 0),
      ticksPerSecond_(static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK))),
      pageSize_(static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE))) {}

bool ProcessReader::read(const ReadingTime& time) {
  if (!directory_.list(listed_)) {
    return false;
  }
  ++reading_;
  ended_.clear();
  followClock(time);
  updateKnown(time);
  addNew(time);
  readOrphans(time);
  reportParents(time);
  return true;
}

/// A process's start must not move while it lives, and the kernel's idea of its own does, by a
/// second, for rounding. By more it moves when the clock is set, as it is after the start of a
/// machine without a battery; starts from before that would be wrong for good.
void ProcessReader::followClock(const ReadingTime& time) {
  // Unsigned, as a captured machine's may be any number.
  const auto step =
      static_cast<std::uint64_t>(time.bootSeconds) - static_cast<std::uint64_t>(bootSeconds_);
  if (step + 1 <= 2) {
    return;
  }
  for (Process& process : processes_) {
    std::int64_t& start = process.record.startSeconds;
    start = static_cast<std::int64_t>(static_cast<std::uint64_t>(start) + step);
  }
  bootSeconds_ = time.bootSeconds;
}

/// Both are in ascending order. Those that are still there close up, and what is not yet known is
/// left in `listed_`.
void ProcessReader::updateKnown(const ReadingTime& time) {
  auto known = processes_.begin();
  auto kept = known;
  auto unknown = listed_.begin();
  for (const std::int32_t pid : listed_) {
    for (; known != processes_.end() && known->record.pid < pid; ++known) {
      retire(*known);
    }
    if (known == processes_.end() || known->record.pid != pid) {
      *unknown++ = pid;
      continue;
    }
    if (update(*known, time)) {
      *kept++ = *known;
    } else {
      retire(*known);
    }
    ++known;
  }
  std::for_each(known, processes_.end(), [this](const Process& each) { retire(each); });
  processes_.erase(kept, processes_.end());
  listed_.erase(unknown, listed_.end());
}

bool ProcessReader::update(Process& process, const ReadingTime& time) {
  // Before the stat file: what the process does in between then shows in the next reading.
  const std::optional<std::uint64_t> clock = clockOf(process.record.pid);
  const bool due =
      static_cast<std::uint32_t>(process.record.pid) % kRotation == reading_ % kRotation;
  if (!clock || *clock != process.cpuTime()) {
    if (process.slot == DescriptorPool::kNoSlot && process.quietReadings < kQuietReadings) {
      process.slot = pool_.take();
    }
    process.quietReadings = 0;
  } else {
    if (process.quietReadings < kQuietReadings && ++process.quietReadings == kQuietReadings) {
      pool_.release(std::exchange(process.slot, DescriptorPool::kNoSlot));
    }
    if (!due) {
      return true;
    }
  }
  if (!readStat(process, time, clock)) {
    return false;
  }
  if (due && process.unitState == Unit::read) {
    readUnit(process);
  }
  return true;
}

void ProcessReader::retire(const Process& process) {
  pool_.release(process.slot);
  ended_.push_back(process.record.pid);
}

void ProcessReader::addNew(const ReadingTime& time) {
  const std::size_t size = processes_.size() + listed_.size();
  if (processes_.capacity() < size) {
    processes_.reserve(size + size / 8);
  }
  for (const std::int32_t pid : listed_) {
    Process process;
    process.record.pid = pid;
    process.quietReadings = kQuietReadings;
    if (readStat(process, time, clockOf(pid))) {
      processes_.push_back(process);
    } else {
      ended_.push_back(pid);
    }
  }
  const auto byPid = [](const Process& a, const Process& b) { return a.record.pid < b.record.pid; };
  if (!std::is_sorted(processes_.begin(), processes_.end(), byPid)) {
    std::sort(processes_.begin(), processes_.end(), byPid);  // the kernel numbers from 1 again
  }
  pids_.clear();
  for (const Process& process : processes_) {
    pids_.push_back(process.record.pid);
  }
}

/// The children of a process that has ended have been given another parent without having run.
/// One that turns out to have ended too is found to be missing by the next reading.
void ProcessReader::readOrphans(const ReadingTime& time) {
  while (!ended_.empty()) {
    std::swap(ended_, endedBefore_);
    ended_.clear();
    std::sort(endedBefore_.begin(), endedBefore_.end());
    for (Process& process : processes_) {
      if (isIn(endedBefore_, process.parent)) {
        readStat(process, time, clockOf(process.record.pid));
      }
    }
  }
}

void ProcessReader::reportParents(const ReadingTime& time) {
  for (Process& process : processes_) {
    process.record.parent = process.parent;
    if (mayHaveUnit(process, time)) {
      Process* const parent = find(process.parent);
      if (parent != nullptr && isBoundary(process, *parent)) {
        process.record.parent = kFirstProcess;
      }
    }
  }
}

void ProcessReader::copyTo(std::vector<ProcessRecord>& records) const {
  records.clear();
  records.reserve(processes_.size());
  for (const Process& process : processes_) {
    records.push_back(process.record);
  }
}

std::optional<TaskFigures> ProcessReader::figures(std::int32_t pid) {
  if (const Process* const process = find(pid)) {
    return process->figures;
  }
  Process process;
  process.record.pid = pid;
  return readStat(process, {}, clockOf(pid)) ? std::optional(process.figures) : std::nullopt;
}

std::vector<ApplicationProcess> ProcessReader::application(std::int32_t pid) {
  std::vector<ApplicationProcess> application;
  const Process* const first = find(pid);
  if (first == nullptr || first->record.parent > kFirstProcess) {
    return application;
  }
  const auto add = [&application](const Process& process) {
    application.push_back({.pid = process.record.pid,
                           .startTicks = process.startTicks,
                           .name = std::string(process.record.name()),
                           .recentMicroseconds = process.recentMicroseconds,
                           .controlsJobs = process.controlsJobs,
                           .isKernelThread = process.unitState == Unit::never});
  };
  add(*first);
  for (const Process& process : processes_) {
    if (process.record.parent == pid && pid > kFirstProcess) {
      add(process);
    }
  }
  return application;
}

std::optional<ProcessRecord> ProcessReader::readRecord(std::int32_t pid, const ReadingTime& time) {
  Process process;
  process.record.pid = pid;
  if (!readStat(process, time, clockOf(pid))) {
    return std::nullopt;
  }
  process.record.parent = process.parent;
  if (mayHaveUnit(process, time)) {
    Process unlisted;
    unlisted.record.pid = process.parent;
    Process* const parent = find(process.parent);
    if (isBoundary(process, parent != nullptr ? *parent : unlisted)) {
      process.record.parent = kFirstProcess;
    }
  }
  return process.record;
}

ProcessReader::Process* ProcessReader::find(std::int32_t pid) {
  const auto found = std::lower_bound(pids_.begin(), pids_.end(), pid);
  return found != pids_.end() && *found == pid
             ? &processes_[static_cast<std::size_t>(found - pids_.begin())]
             : nullptr;
}

std::optional<std::uint64_t> ProcessReader::clockOf(std::int32_t pid) const {
  return directory_.sharesPids() ? cpuClock(pid) : std::nullopt;
}

bool ProcessReader::readStat(Process& process, const ReadingTime& time,
                             const std::optional<std::uint64_t>& clock) {
  const std::optional<std::string_view> text = readText(process);
  const std::optional<ProcPidStat> stat = text ? parseProcPidStat(*text) : std::nullopt;
  if (!stat || stat->pid != process.record.pid) {
    return false;
  }
  ProcessRecord& record = process.record;
  const bool isAnother = record.status != 0 && process.startTicks != stat->startTicks;
  if (isAnother || (stat->hasEnded() && !process.hasEnded)) {
    ended_.push_back(record.pid);
  }
  process.hasEnded = stat->hasEnded();
  if (isAnother || record.status == 0) {
    begin(process, *stat, time);
  }
  record.status = static_cast<std::int8_t>(stat->state);
  record.command.fill('\0');
  std::copy_n(stat->name.begin(), std::min(stat->name.size(), record.command.size()),
              record.command.begin());
  process.parent = stat->parent;
  if (stat->isKernelThread() != (process.unitState == Unit::never)) {
    process.unitState = stat->isKernelThread() ? Unit::never : Unit::unread;
  }
  process.controlsJobs = stat->controlsJobs();
  setFigures(process.figures, *stat, clock);
  return true;
}

void ProcessReader::begin(Process& process, const ProcPidStat& stat,
                          const ReadingTime& time) const {
  process.startTicks = stat.startTicks;
  process.record.startSeconds = static_cast<std::int64_t>(
      static_cast<std::uint64_t>(time.bootSeconds) + stat.startTicks / ticksPerSecond_);
  process.figures = {};
  process.unitState = Unit::unread;
  process.unit = 0;
}

/// The file has the time in clock ticks. Its sum never goes down as long as the process lives, even
/// if the clock fails.
void ProcessReader::setFigures(TaskFigures& figures, const ProcPidStat& stat,
                               const std::optional<std::uint64_t>& clock) const {
  const std::uint64_t nanosecondsPerTick = 1'000'000'000U / ticksPerSecond_;
  const std::uint64_t before = figures.userNanoseconds + figures.systemNanoseconds;
  const std::uint64_t total =
      std::max(before, clock ? *clock : (stat.userTicks + stat.systemTicks) * nanosecondsPerTick);
  figures.userNanoseconds = std::min(stat.userTicks * nanosecondsPerTick, total);
  figures.systemNanoseconds = total - figures.userNanoseconds;
  figures.virtualBytes = stat.virtualBytes;
  figures.residentBytes = stat.residentPages * pageSize_;
  figures.threads = stat.threads;
}

bool ProcessReader::mayHaveUnit(const Process& process, const ReadingTime& time) const {
  return process.parent > kFirstProcess && process.unitState != Unit::never &&
         process.startTicks + ticksPerSecond_ <= time.ticksSinceBoot;
}

bool ProcessReader::isBoundary(Process& process, Process& parent) {
  ensureUnit(process);
  ensureUnit(parent);
  return process.unit != 0 && parent.unit != 0 && process.unit != parent.unit;
}

void ProcessReader::ensureUnit(Process& process) {
  if (process.unitState == Unit::unread) {
    readUnit(process);
  }
}

void ProcessReader::readUnit(Process& process) {
  FileDescriptor file;
  const std::optional<std::string_view> text = readText(file, process.record.pid, "cgroup");
  const std::string_view path = text ? unitPath(*text) : std::string_view();
  process.unit = path.empty() ? 0 : std::hash<std::string_view>()(path);
  process.unitState = Unit::read;
}

std::optional<std::string_view> ProcessReader::readText(Process& process) {
  FileDescriptor* const kept = pool_.file(process.slot);
  if (kept != nullptr && kept->isOpen()) {
    if (const std::optional<std::string_view> text = directory_.read(*kept)) {
      return text;
    }
    // The process has ended, and the pid may be another's by now.
  }
  FileDescriptor once;
  return readText(kept != nullptr ? *kept : once, process.record.pid, "stat");
}

std::optional<std::string_view> ProcessReader::readText(FileDescriptor& file, std::int32_t pid,
                                                        std::string_view name) {
  if (directory_.open(file, pid, name)) {
    return directory_.read(file);
  }
  // Without a descriptor to be had, those in the pool are needed elsewhere.
  const bool areUsedUp = errno == EMFILE || errno == ENFILE;
  FileDescriptor once;
  if (areUsedUp && pool_.shut() && directory_.open(once, pid, name)) {
    return directory_.read(once);
  }
  return std::nullopt;
}

}  // namespace vel
