// The system's processes, read again and again.
#include "platform/linux/ProcessReader.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <functional>
#include <utility>

#include "platform/linux/ControlGroup.h"
#include "platform/linux/CpuClock.h"
#include "platform/linux/ProgramName.h"

namespace vel {

namespace {

/// A process that has run in one of so many readings is likely to run again: its file stays open.
constexpr std::uint8_t kQuietReadings = 4;

bool isIn(const std::vector<std::int32_t>& sorted, std::int32_t pid) {
  return std::binary_search(sorted.begin(), sorted.end(), pid);
}

/// A worker's name, after which the kernel says what it works at: "kworker/u8:2-events".
std::string_view withoutWork(std::string_view name) {
  constexpr std::string_view kWorker = "kworker/";
  const bool isWorker = name.starts_with(kWorker) && !name.starts_with("kworker/R-");
  return isWorker ? name.substr(0, name.find_first_of("-+")) : name;
}

/// Whether it now is what it was not; then it is.
template <typename T>
bool becomes(T& value, T now) {
  return std::exchange(value, now) != now;
}

}  // namespace

ProcessReader::ProcessReader(ProcessDirectory& directory)
    : directory_(directory),
      // Captured files may have been put in the place of others.
      pool_(directory.onProcfs() ? DescriptorPool::fairSize() : 0),
      ticksPerSecond_(static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK))),
      pageSize_(static_cast<std::uint64_t>(::sysconf(_SC_PAGESIZE))),
      processors_(static_cast<std::uint64_t>(std::max(::sysconf(_SC_NPROCESSORS_CONF), 1L))) {}

bool ProcessReader::read(const ReadingTime& time) {
  if (!directory_.list(listed_)) {
    return false;
  }
  ++reading_;
  ended_.clear();
  endedLeaders_.clear();
  updateKnown(time);
  addNew(time);
  readOrphans(time);
  settle(time);
  readUnits(time);
  std::sort(endedLeaders_.begin(), endedLeaders_.end());
  applications_.place(reading_, endedLeaders_);
  ticksBefore_ = time.ticksSinceBoot;
  return true;
}

/// Both are in ascending order. Those that are still there close up, and what is not yet known is
/// left in `listed_`.
void ProcessReader::updateKnown(const ReadingTime& time) {
  auto known = processes_.all.begin();
  const auto end = processes_.all.end();
  auto kept = known;
  auto unknown = listed_.begin();
  for (const std::int32_t pid : listed_) {
    for (; known != end && known->record.pid < pid; ++known) {
      retire(*known);
    }
    if (known == end || known->record.pid != pid) {
      *unknown++ = pid;
      continue;
    }
    if (!update(*known, time)) {
      retire(*known);
    } else {
      if (kept != known) {
        *kept = *known;
      }
      ++kept;
    }
    ++known;
  }
  std::for_each(known, end, [this](const KnownProcess& each) { retire(each); });
  processes_.all.erase(kept, end);
  listed_.erase(unknown, listed_.end());
}

bool ProcessReader::update(KnownProcess& process, const ReadingTime& time) {
  // Before the stat file: what the process does in between then shows in the next reading.
  const std::optional<std::uint64_t> clock = clockOf(process.record.pid);
  const bool due =
      static_cast<std::uint32_t>(process.record.pid) % kRotation == reading_ % kRotation;
  process.recentMicroseconds /= 2;
  if (process.unitState == Unit::unread && isOldEnoughForUnit(process, time)) {
    processes_.unplace(process);
  }
  if (!clock || *clock != process.cpuTime()) {
    if (process.slot == DescriptorPool::kNoSlot && process.quietReadings < kQuietReadings) {
      process.slot = pool_.take();
    }
    process.quietReadings = 0;
  } else {
    if (process.quietReadings < kQuietReadings && ++process.quietReadings == kQuietReadings) {
      pool_.release(std::exchange(process.slot, DescriptorPool::kNoSlot));
    }
    if (!due && !process.mustBeRead) {
      return true;
    }
  }
  process.mustBeRead = false;
  if (!readStat(process, time, clock)) {
    return false;
  }
  if (due && process.unitState == Unit::read) {
    readUnit(process);
  }
  return true;
}

void ProcessReader::retire(const KnownProcess& process) {
  pool_.release(process.slot);
  ended_.push_back(process.record.pid);
  endedTime_.hasEnded(process, reading_);
  if (process.leads()) {
    endedLeaders_.push_back(process.record.pid);
  }
}

void ProcessReader::addNew(const ReadingTime& time) {
  if (listed_.empty() && ended_.empty()) {
    return;
  }
  std::vector<KnownProcess>& all = processes_.all;
  const std::size_t size = all.size() + listed_.size();
  if (all.capacity() < size) {
    all.reserve(size + size / 8);
  }
  for (const std::int32_t pid : listed_) {
    KnownProcess process;
    process.record.pid = pid;
    process.quietReadings = kQuietReadings;
    if (readStat(process, time, clockOf(pid))) {
      all.push_back(process);
    } else {
      ended_.push_back(pid);
    }
  }
  const auto byPid = [](const KnownProcess& a, const KnownProcess& b) {
    return a.record.pid < b.record.pid;
  };
  if (!std::is_sorted(all.begin(), all.end(), byPid)) {
    std::sort(all.begin(), all.end(), byPid);  // the kernel numbers from 1 again
  }
  processes_.index();
}

/// The children of a process that has ended have been given another parent without having run.
/// One that turns out to have ended too is found to be missing by the next reading.
void ProcessReader::readOrphans(const ReadingTime& time) {
  while (!ended_.empty()) {
    std::swap(ended_, endedBefore_);
    ended_.clear();
    std::sort(endedBefore_.begin(), endedBefore_.end());
    for (KnownProcess& process : processes_.all) {
      if (isIn(endedBefore_, process.parent)) {
        readStat(process, time, clockOf(process.record.pid));
      }
    }
  }
}

void ProcessReader::settle(const ReadingTime& time) {
  const std::uint64_t intervals = std::exchange(hasLeftGrowth_, false) ? 2 : 1;
  if (endedTime_.sortGrowths()) {
    leaveEarlyGrowth();
  }
  const std::uint64_t ticks = time.ticksSinceBoot - ticksBefore_.value_or(0) + 1;
  const std::uint64_t nanosecondsPerTick = 1'000'000'000U / ticksPerSecond_;
  // Over captured files time does not pass.
  const bool passes = time.ticksSinceBoot != std::numeric_limits<std::uint64_t>::max();
  endedTime_.settle(passes ? ticks * nanosecondsPerTick * processors_ * intervals
                           : std::numeric_limits<std::int64_t>::max());
}

/// A child with a lower pid than its parent is read before it, and may have ended in between: then
/// the parent has it already, and we do not yet know that it is gone. Parent and child are compared
/// by the next reading.
void ProcessReader::leaveEarlyGrowth() {
  for (const KnownProcess& process : processes_.all) {
    if (process.parent <= process.record.pid) {
      continue;
    }
    const std::uint64_t growth = endedTime_.growthOf(process.parent);
    KnownProcess* const parent = growth == 0 ? nullptr : processes_.find(process.parent);
    if (parent == nullptr || !directory_.sharesPids() || clockOf(process.record.pid)) {
      continue;
    }
    endedTime_.takeBack(process.parent);
    hasLeftGrowth_ = true;
    parent->endedChildren -= growth;
    parent->mustBeRead = true;
  }
}

void ProcessReader::readUnits(const ReadingTime& time) {
  // More may join them in between, whose units have just been read.
  for (std::size_t i = 0, count = processes_.unplaced.size(); i < count; ++i) {
    KnownProcess* const process = processes_.find(processes_.unplaced[i]);
    if (process == nullptr || process->isPlaced || !isOldEnoughForUnit(*process, time)) {
      continue;
    }
    if (KnownProcess* const parent = processes_.find(process->parent)) {
      ensureUnit(*process, time);
      ensureUnit(*parent, time);
    }
  }
}

void ProcessReader::copyTo(std::vector<ProcessRecord>& records) const {
  records.clear();
  records.reserve(processes_.all.size());
  for (const KnownProcess& process : processes_.all) {
    records.push_back(process.record);
  }
}

/// How much of ended children's time was the user's is not kept apart.
std::optional<TaskFigures> ProcessReader::figures(std::int32_t pid) {
  if (const KnownProcess* const process = processes_.find(pid)) {
    TaskFigures figures = process->own;
    const std::uint64_t total = process->contribution();
    figures.userNanoseconds = std::min(figures.userNanoseconds, total);
    figures.systemNanoseconds = total - figures.userNanoseconds;
    return figures;
  }
  KnownProcess process;
  process.record.pid = pid;
  return readStat(process, {}, clockOf(pid)) ? std::optional(process.own) : std::nullopt;
}

std::vector<ApplicationProcess> ProcessReader::application(std::int32_t pid) {
  std::vector<ApplicationProcess> application;
  const KnownProcess* const first = processes_.find(pid);
  if (first == nullptr || !first->leads()) {
    return application;
  }
  const auto add = [&application](const KnownProcess& process) {
    application.push_back({.pid = process.record.pid,
                           .startTicks = process.startTicks,
                           .name = std::string(process.record.name()),
                           .recentMicroseconds = process.recentMicroseconds,
                           .controlsJobs = process.controlsJobs,
                           .isKernelThread = process.isKernelThread()});
  };
  add(*first);
  for (const KnownProcess& process : processes_.all) {
    if (process.leader == pid && !process.leads()) {
      add(process);
    }
  }
  return application;
}

std::optional<std::string> ProcessReader::applicationName(std::int32_t pid) {
  const KnownProcess* const leader = processes_.find(pid);
  if (leader == nullptr) {
    return std::nullopt;
  }
  const KnownProcess& process = namesake(*leader);
  const Name* const known = knownNameOf(process);
  if (known != nullptr) {
    return known->text;
  }
  const std::string_view command = process.record.name();
  if (!needsCommandLine(command, process.controlsJobs)) {
    return std::string(command);
  }
  FileDescriptor file;
  const std::optional<std::string_view> arguments = readText(file, process.record.pid, "cmdline");
  Name name{.pid = process.record.pid,
            .startTicks = process.startTicks,
            .command = process.record.command,
            .text = programName(command, arguments.value_or(std::string_view()))};
  // The oldest goes.
  nextName_ = (nextName_ + 1) % names_.size();
  return (names_[nextName_] = std::move(name)).text;
}

/// It stays what it has been: a process that has ended has no command line any more, and a script
/// may begin to control jobs.
const ProcessReader::Name* ProcessReader::knownNameOf(const KnownProcess& process) const {
  const auto* const found =
      std::find_if(names_.begin(), names_.end(), [&process](const Name& each) {
        return each.pid == process.record.pid && each.startTicks == process.startTicks &&
               each.command == process.record.command;
      });
  return found != names_.end() ? &*found : nullptr;
}

/// What runs in a wrapper: of the others in the application, wrappers apart, the one that was
/// started first.
const KnownProcess& ProcessReader::namesake(const KnownProcess& leader) const {
  if (!isWrapper(leader.record.name())) {
    return leader;
  }
  const KnownProcess* first = &leader;
  for (const KnownProcess& process : processes_.all) {
    const bool counts = process.leader == leader.record.pid && !isWrapper(process.record.name());
    if (counts && (first == &leader || process.startTicks < first->startTicks)) {
      first = &process;
    }
  }
  return *first;
}

std::optional<ProcessRecord> ProcessReader::readRecord(std::int32_t pid, const ReadingTime& time) {
  KnownProcess process;
  process.record.pid = pid;
  if (!readStat(process, time, clockOf(pid))) {
    return std::nullopt;
  }
  process.record.parent = process.parent;
  return process.record;
}

std::optional<std::uint64_t> ProcessReader::clockOf(std::int32_t pid) const {
  return directory_.sharesPids() ? cpuClock(pid) : std::nullopt;
}

/// False for a process that has ended, also if the pid is another's now.
bool ProcessReader::readStat(KnownProcess& process, const ReadingTime& time,
                             const std::optional<std::uint64_t>& clock) {
  const std::optional<std::string_view> text = readText(process);
  const std::optional<ProcPidStat> stat = text ? parseProcPidStat(*text) : std::nullopt;
  if (!stat || stat->pid != process.record.pid) {
    return false;
  }
  const bool isNew = process.record.status == 0;
  if (!isNew && process.startTicks != stat->startTicks) {
    return false;
  }
  if (stat->hasEnded() && !process.hasEnded) {
    ended_.push_back(process.record.pid);
  }
  process.hasEnded = stat->hasEnded();
  if (isNew) {
    begin(process, *stat, time);
  }
  const bool isOld = isNew && !process.isNewborn;
  process.record.status = static_cast<std::int8_t>(stat->state);
  setLineage(process, *stat);
  setEndedChildren(process, *stat);
  setFigures(process, *stat, clock);
  if (isOld) {
    process.recentMicroseconds = 0;  // who knows when
  }
  return true;
}

void ProcessReader::begin(KnownProcess& process, const ProcPidStat& stat,
                          const ReadingTime& time) const {
  process.startTicks = stat.startTicks;
  process.record.startSeconds = static_cast<std::int64_t>(
      static_cast<std::uint64_t>(time.bootSeconds) + stat.startTicks / ticksPerSecond_);
  process.firstReading = reading_;
  process.isNewborn = ticksBefore_ && stat.startTicks >= *ticksBefore_;
  process.endedChildren = stat.childrenTicks * (1'000'000'000U / ticksPerSecond_);
  process.credit = static_cast<std::int64_t>(process.endedChildren);
}

/// All that the rules go by; of a process that has changed none of it nothing else is asked.
void ProcessReader::setLineage(KnownProcess& process, const ProcPidStat& stat) {
  std::string_view name = stat.isKernelThread() ? withoutWork(stat.name) : stat.name;
  if (name.empty()) {
    name = "?";  // a process may take its name away (man 2 prctl), and would be in no list
  }
  Command command{};
  std::copy_n(name.begin(), std::min(name.size(), command.size()), command.begin());
  bool changed = becomes(process.record.command, command);
  process.isOrphan |= process.parent != 0 && process.parent != stat.parent;
  changed |= becomes(process.parent, stat.parent);
  changed |= becomes(process.group, stat.group);
  changed |= becomes(process.session, stat.session);
  changed |= becomes(process.terminal, stat.terminal);
  changed |= becomes(process.controlsJobs, stat.controlsJobs());
  if (stat.isKernelThread() != process.isKernelThread()) {
    process.unitState = stat.isKernelThread() ? Unit::never : Unit::unread;
    changed = true;
  }
  if (changed) {
    processes_.unplace(process);
  }
}

void ProcessReader::setEndedChildren(KnownProcess& process, const ProcPidStat& stat) {
  const std::uint64_t now = stat.childrenTicks * (1'000'000'000U / ticksPerSecond_);
  const std::uint64_t before = std::exchange(process.endedChildren, now);
  if (now > before) {
    endedTime_.hasGrown(process.record.pid, now - before);
  }
}

/// The file has the time in clock ticks. Its sum never goes down as long as the process lives, even
/// if the clock fails.
void ProcessReader::setFigures(KnownProcess& process, const ProcPidStat& stat,
                               const std::optional<std::uint64_t>& clock) const {
  const std::uint64_t nanosecondsPerTick = 1'000'000'000U / ticksPerSecond_;
  const std::uint64_t before = process.cpuTime();
  const std::uint64_t total =
      std::max(before, clock ? *clock : (stat.userTicks + stat.systemTicks) * nanosecondsPerTick);
  process.addRecent(total - before);
  TaskFigures& figures = process.own;
  figures.userNanoseconds = std::min(stat.userTicks * nanosecondsPerTick, total);
  figures.systemNanoseconds = total - figures.userNanoseconds;
  figures.virtualBytes = stat.virtualBytes;
  figures.residentBytes = stat.residentPages * pageSize_;
  figures.threads = stat.threads;
}

bool ProcessReader::isOldEnoughForUnit(const KnownProcess& process, const ReadingTime& time) const {
  return process.parent >= KnownProcess::kFirst &&
         process.startTicks + ticksPerSecond_ <= time.ticksSinceBoot;
}

void ProcessReader::ensureUnit(KnownProcess& process, const ReadingTime& time) {
  if (process.unitState == Unit::unread &&
      (process.record.pid == KnownProcess::kFirst || isOldEnoughForUnit(process, time))) {
    readUnit(process);
  }
}

void ProcessReader::readUnit(KnownProcess& process) {
  FileDescriptor file;
  const std::optional<std::string_view> text = readText(file, process.record.pid, "cgroup");
  const std::string_view path = text ? unitPath(*text) : std::string_view();
  process.isSessionUnit = isSessionUnit(path);
  process.unitState = Unit::read;
  if (becomes(process.unit,
              path.empty() ? std::uint64_t{0} : std::hash<std::string_view>()(path))) {
    processes_.unplace(process);
  }
}

std::optional<std::string_view> ProcessReader::readText(KnownProcess& process) {
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
