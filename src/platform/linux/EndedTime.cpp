// The CPU time of processes that have ended, and whose it is.
#include "platform/linux/EndedTime.h"

#include <algorithm>

namespace vel {

namespace {

/// Of a tree of processes; more is a circle.
constexpr int kMostGenerations = 1000;

}  // namespace

void EndedTime::hasEnded(const KnownProcess& process, std::uint32_t reading) {
  ended_.push_back({.pid = process.record.pid,
                    .parent = process.parent,
                    .leader = process.leader,
                    .isUnshown = process.isNewborn && process.firstReading + 1 == reading,
                    .contribution = process.contribution(),
                    .unexplained = process.cpuTime() + process.endedChildren});
}

void EndedTime::hasGrown(std::int32_t pid, std::uint64_t nanoseconds) {
  growths_.push_back({.pid = pid, .nanoseconds = nanoseconds});
}

std::uint64_t EndedTime::growthOf(std::int32_t pid) const {
  std::uint64_t sum = 0;
  for (const Growth& growth : growths_) {
    sum += growth.pid == pid ? growth.nanoseconds : 0;
  }
  return sum;
}

void EndedTime::takeBack(std::int32_t pid) {
  std::erase_if(growths_, [pid](const Growth& growth) { return growth.pid == pid; });
}

void EndedTime::settle(std::uint64_t capacity) {
  std::sort(growths_.begin(), growths_.end(),
            [](const Growth& a, const Growth& b) { return a.pid < b.pid; });
  std::sort(ended_.begin(), ended_.end(),
            [](const Ended& a, const Ended& b) { return a.pid < b.pid; });
  bequeath();
  findParents();
  for (Ended& ended : ended_) {
    explain(ended, ended.parent);
  }
  for (Ended& ended : ended_) {
    if (ended.isOrphan) {
      explainFurtherUp(ended);
    }
  }
  credit(capacity);
  keepUnexplained();
}

/// What a row has had of a process it keeps as long as its first process lives. Where that one has
/// gone as well before anything was shown of the row, nobody has had any of it.
void EndedTime::bequeath() {
  for (Ended& ended : ended_) {
    if (ended.isOfLast) {
      continue;
    }
    if (KnownProcess* const leader = processes_.find(ended.leader)) {
      leader->credit += static_cast<std::int64_t>(ended.contribution);
    } else if (ended.isUnshown) {
      const Ended* const first = find(ended.leader);
      if (first == nullptr || first->isUnshown) {
        ended.unexplained = 0;
      }
    }
  }
}

/// The next one up that is still there. One that only waits for its own parent has no children.
void EndedTime::findParents() {
  for (Ended& ended : ended_) {
    const KnownProcess* parent = processes_.find(ended.parent);
    for (int up = 0; parent == nullptr && ended.parent != KnownProcess::kFirst; ++up) {
      const Ended* const gone = up < kMostGenerations ? find(ended.parent) : nullptr;
      ended.isOrphan = true;
      ended.parent = gone != nullptr ? gone->parent : KnownProcess::kFirst;
      parent = processes_.find(ended.parent);
    }
    ended.isOrphan = ended.isOrphan || (parent != nullptr && parent->hasEnded);
  }
}

void EndedTime::explain(Ended& ended, std::int32_t pid) {
  const auto growth =
      std::lower_bound(growths_.begin(), growths_.end(), pid,
                       [](const Growth& each, std::int32_t wanted) { return each.pid < wanted; });
  for (auto each = growth; each != growths_.end() && each->pid == pid; ++each) {
    const std::uint64_t part = std::min(ended.unexplained, each->nanoseconds);
    ended.unexplained -= part;
    each->nanoseconds -= part;
  }
}

void EndedTime::explainFurtherUp(Ended& ended) {
  const KnownProcess* ancestor = processes_.find(ended.parent);
  for (int up = 0; ancestor != nullptr && ended.unexplained != 0 && up < kMostGenerations; ++up) {
    explain(ended, ancestor->parent);
    ancestor = processes_.find(ancestor->parent);
  }
}

void EndedTime::credit(std::uint64_t capacity) {
  for (const Growth& growth : growths_) {
    KnownProcess* const process = processes_.find(growth.pid);
    if (process != nullptr) {
      const std::uint64_t gained = std::min(growth.nanoseconds, capacity);
      process->credit += static_cast<std::int64_t>(gained);
      process->addRecent(gained);
    }
  }
  growths_.clear();
}

void EndedTime::keepUnexplained() {
  std::erase_if(ended_,
                [](const Ended& ended) { return ended.isOfLast || ended.unexplained == 0; });
  for (Ended& ended : ended_) {
    ended.isOfLast = true;
    if (KnownProcess* const parent = processes_.find(ended.parent)) {
      parent->mustBeRead = true;
    }
  }
}

const EndedTime::Ended* EndedTime::find(std::int32_t pid) const {
  const auto found =
      std::lower_bound(ended_.begin(), ended_.end(), pid,
                       [](const Ended& each, std::int32_t wanted) { return each.pid < wanted; });
  return found != ended_.end() && found->pid == pid ? &*found : nullptr;
}

}  // namespace vel
