// The CPU time of processes that have ended, and whose it is.
#include "platform/linux/EndedTime.h"

#include <algorithm>
#include <utility>

namespace vel {

namespace {

/// Of a tree of processes; more is a circle.
constexpr int kMostGenerations = 1000;

/// They are sorted.
auto firstGrowthOf(auto& growths, std::int32_t pid) {
  return std::lower_bound(growths.begin(), growths.end(), pid,
                          [](const auto& each, std::int32_t wanted) { return each.pid < wanted; });
}

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

bool EndedTime::sortGrowths() {
  std::sort(growths_.begin(), growths_.end(),
            [](const Growth& a, const Growth& b) { return a.pid < b.pid; });
  return !growths_.empty();
}

std::uint64_t EndedTime::growthOf(std::int32_t pid) const {
  std::uint64_t sum = 0;
  for (auto each = firstGrowthOf(growths_, pid); each != growths_.end() && each->pid == pid;
       ++each) {
    sum += each->nanoseconds;
  }
  return sum;
}

void EndedTime::takeBack(std::int32_t pid) {
  std::erase_if(growths_, [pid](const Growth& growth) { return growth.pid == pid; });
}

void EndedTime::settle(std::uint64_t capacity) {
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
      leader->addCredit(ended.contribution);
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
    const std::int32_t parent = nextOneUp(ended);
    // For all on the way, so that none of it is gone again.
    for (Ended* each = &ended; each != nullptr && each->parent != parent;) {
      const std::int32_t next = std::exchange(each->parent, parent);
      each->isOrphan = true;
      each = find(next);
    }
    const KnownProcess* const known = processes_.find(parent);
    ended.isOrphan = ended.isOrphan || (known != nullptr && known->hasEnded);
  }
}

std::int32_t EndedTime::nextOneUp(const Ended& ended) {
  std::int32_t parent = ended.parent;
  for (std::size_t up = 0; processes_.find(parent) == nullptr; ++up) {
    const Ended* const gone = find(parent);
    if (gone == nullptr || up == ended_.size()) {
      return KnownProcess::kFirst;
    }
    parent = gone->parent;
  }
  return parent;
}

void EndedTime::explain(Ended& ended, std::int32_t pid) {
  for (auto each = firstGrowthOf(growths_, pid); each != growths_.end() && each->pid == pid;
       ++each) {
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
      process->addCredit(gained);
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
  }
}

EndedTime::Ended* EndedTime::find(std::int32_t pid) {
  const auto found =
      std::lower_bound(ended_.begin(), ended_.end(), pid,
                       [](const Ended& each, std::int32_t wanted) { return each.pid < wanted; });
  return found != ended_.end() && found->pid == pid ? &*found : nullptr;
}

}  // namespace vel
