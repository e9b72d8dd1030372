// Which application each process belongs to.
#include "platform/linux/Applications.h"

#include <algorithm>
#include <utility>

#include "platform/linux/Launchers.h"

namespace vel {

namespace {

constexpr std::int32_t kNone = 0;

/// A row that is given up in one gives up no other row in most readings.
constexpr int kMostRounds = 16;

/// It is given the children of those that have ended, beside its own.
bool isReaper(const KnownProcess& process) {
  return process.record.pid == KnownProcess::kFirst || process.record.name() == "systemd";
}

bool isInAnotherUnit(const KnownProcess& process, const KnownProcess& parent) {
  const bool isParentKnown = parent.unit != 0 || parent.record.pid == KnownProcess::kFirst;
  return process.unit != 0 && isParentKnown && process.unit != parent.unit;
}

/// Whether the process can belong to that leader without being its descendant.
bool isOf(const KnownProcess& process, const KnownProcess* leader) {
  return leader != nullptr && leader->session == process.session && !leader->controlsJobs &&
         !isLauncher(leader->record.name());
}

bool isJobOf(const KnownProcess& process, const KnownProcess& parent) {
  return parent.controlsJobs && process.session == parent.session && process.group != parent.group;
}

/// An interactive shell does, and what a terminal's window, or a server of logins, runs in place of
/// one. Programs that have a terminal themselves may give their helpers another one, as sudo does.
bool beginsTerminalSession(const KnownProcess& process, const KnownProcess& parent) {
  return process.controlsJobs ||
         (process.session == process.record.pid && process.terminal != 0 && parent.terminal == 0);
}

/// A launcher is an application, too, whoever starts it. Up to the moment when a new process runs
/// another program it is a copy of its parent.
bool isLaunchedBy(const KnownProcess& process, const KnownProcess& parent) {
  const std::string_view own = launcherFamily(process.record.name());
  const std::string_view family = launcherFamily(parent.record.name());
  return own != family && !(own.empty() && family.empty());
}

}  // namespace

void Applications::place(std::uint32_t reading, const std::vector<std::int32_t>& ended) {
  reading_ = reading;
  if (!ended.empty()) {
    forget(ended);
  }
  placePending();
  for (int round = 0; !disbanded_.empty() && round < kMostRounds; ++round) {
    std::sort(disbanded_.begin(), disbanded_.end());
    forget(disbanded_);
    disbanded_.clear();
    placePending();
  }
}

void Applications::placePending() {
  std::swap(processes_.unplaced, pending_);
  processes_.unplaced.clear();
  // Who was there first leads.
  std::sort(pending_.begin(), pending_.end());
  for (const std::int32_t pid : pending_) {
    KnownProcess* const process = processes_.find(pid);
    if (process != nullptr && !process->isPlaced) {
      place(*process);
    }
  }
}

void Applications::forget(const std::vector<std::int32_t>& ended) {
  const auto isEnded = [&ended](std::int32_t pid) {
    return std::binary_search(ended.begin(), ended.end(), pid);
  };
  for (KnownProcess& process : processes_.all) {
    if (process.leader != kNone && isEnded(process.leader)) {
      process.leader = kNone;
      processes_.unplace(process);
    }
  }
  std::erase_if(unitLeaders_, [this, isEnded](const UnitLeader& each) {
    return isEnded(each.pid) || processes_.find(each.pid) == nullptr;
  });
}

void Applications::place(KnownProcess& process) {
  // Before its parent, lest pids that were read at different times make a circle.
  process.isPlaced = true;
  KnownProcess* const parent = processes_.find(process.parent);
  if (parent != nullptr && !parent->isPlaced) {
    place(*parent);
  }
  move(process, leaderOf(process, parent));
  const bool hasUnknownParent = parent == nullptr || process.isKernelThread();
  process.record.parent = !process.leads()   ? process.leader
                          : hasUnknownParent ? kNone
                                             : KnownProcess::kFirst;
  if (parent == nullptr && process.parent != kNone) {
    // It may be there next time, as when descriptors had run out.
    processes_.unplace(process);
  }
}

/// The rules. The first that holds counts.
std::int32_t Applications::leaderOf(KnownProcess& process, const KnownProcess* parent) {
  const std::int32_t own = process.record.pid;
  // The kernel starts programs itself, as for a core dump.
  if (process.isKernelThread() || parent == nullptr || parent->isKernelThread() ||
      parent == &process) {
    return own;
  }
  if (isInAnotherUnit(process, *parent)) {
    const std::int32_t leader = leaderInUnit(process);
    return leader != kNone ? leader : leaderOfOrphan(process);
  }
  if (process.leads() && process.record.parent != kNone) {
    return own;
  }
  if (isJobOf(process, *parent)) {
    process.isJob = true;
    return own;
  }
  if (beginsTerminalSession(process, *parent)) {
    return own;
  }
  if (isReaper(*parent) || process.isOrphan) {
    return leaderOfOrphan(process);
  }
  if (isLaunchedBy(process, *parent)) {
    return own;
  }
  // A subreaper's group is another; that of a pipe's end is the same, and led by its beginning.
  const std::int32_t job = process.group != parent->group ? jobOf(process) : kNone;
  if (job != kNone) {
    process.isOrphan = true;
    return job;
  }
  return parent->leader != kNone ? parent->leader : own;
}

/// A unit is one application, wherever its processes come from, unless it is a login session or
/// that of a launcher or a shell: then nothing.
std::int32_t Applications::leaderInUnit(const KnownProcess& process) {
  if (process.isSessionUnit) {
    return kNone;
  }
  const auto known =
      std::find_if(unitLeaders_.begin(), unitLeaders_.end(),
                   [&process](const UnitLeader& each) { return each.unit == process.unit; });
  if (known == unitLeaders_.end()) {
    unitLeaders_.push_back({.unit = process.unit, .pid = process.record.pid});
    return process.record.pid;
  }
  const KnownProcess* const leader = processes_.find(known->pid);
  if (leader == nullptr || leader->unit != process.unit ||
      (leader != &process && !leader->leads())) {
    known->pid = process.record.pid;
    return process.record.pid;
  }
  if (leader != &process && (leader->controlsJobs || isLauncher(leader->record.name()))) {
    return kNone;
  }
  return known->pid;
}

/// A process whose parent is not the one that started it, or has it as a service: it stays with its
/// application unless it has left that one's session, as what detaches itself does.
std::int32_t Applications::leaderOfOrphan(const KnownProcess& process) {
  if (process.leads()) {
    return process.leader;
  }
  if (isOf(process, processes_.find(process.leader))) {
    return process.leader;
  }
  const std::int32_t job = jobOf(process);
  return job != kNone ? job : process.record.pid;
}

/// The job of its process group, as long as that one's first process is there. This also holds for
/// one that is first seen when its parent has ended.
std::int32_t Applications::jobOf(const KnownProcess& process) {
  const KnownProcess* const head = processes_.find(process.group);
  return isOf(process, head) && head->isJob ? process.group : kNone;
}

void Applications::move(KnownProcess& process, std::int32_t leader) {
  const bool isNew = process.firstReading == reading_;
  const std::int32_t before = std::exchange(process.leader, leader);
  if (isNew && before == kNone) {
    begin(process);
  }
  if (before == leader) {
    return;
  }
  if (before == process.record.pid) {
    disbanded_.push_back(before);
  } else if (KnownProcess* const left = processes_.find(before)) {
    left->addCredit(process.contribution());
  }
  if (process.leads()) {
    process.leadsSince = reading_;
    return;
  }
  const KnownProcess* const joined = processes_.find(leader);
  const bool isOfNewRow = joined == nullptr || joined->leadsSince == reading_;
  if (!isOfNewRow && !(isNew && process.isNewborn)) {
    process.credit = static_cast<std::int64_t>(0 - process.cpuTime());
  }
}

/// Of children that had ended before the process was seen, those of a shell, a launcher or a
/// service manager were applications of their own.
void Applications::begin(KnownProcess& process) const {
  if (!process.isNewborn &&
      (process.controlsJobs || isReaper(process) || isLauncher(process.record.name()))) {
    process.credit = 0;
  }
}

}  // namespace vel
