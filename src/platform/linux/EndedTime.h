// The CPU time of processes that have ended, and whose it is.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/KnownProcess.h"

namespace vel {

/// The kernel adds the time of a process that has ended, and of all that it has waited for itself,
/// to what its parent has in that way, once the parent waits for it (man 2 times). So that growth
/// has in it
/// - what a reading before has found the ended process to have used: that is in a row already, and
///   stays in it, as the row's first process is given it at once;
/// - what it has used since, and all of a process that no reading has seen: that is the parent's.
///
/// The two sides may show in two readings, as no reading takes all processes at one moment: what a
/// process leaves waits for the growth that it explains until the reading after it is missed.
/// A process whose parent has ended at about the same time has been waited for by that parent, or
/// by one further up.
class EndedTime {
 public:
  explicit EndedTime(KnownProcesses& processes) : processes_(processes) {}

  /// The process is no longer there; it is as the reading before has left it.
  void hasEnded(const KnownProcess& process, std::uint32_t reading);

  /// What the process has of its ended children has become more, by nanoseconds.
  void hasGrown(std::int32_t pid, std::uint64_t nanoseconds);

  /// To be called when all is known, before the rest. Whether there is any growth.
  bool sortGrowths();
  [[nodiscard]] std::uint64_t growthOf(std::int32_t pid) const;
  void takeBack(std::int32_t pid);

  /// Gives everybody what is theirs, at most `capacity` nanoseconds to each: what the processors
  /// can have done since the reading before. What is above it is of children that could not be
  /// seen.
  void settle(std::uint64_t capacity);

 private:
  struct Ended {
    std::int32_t pid;
    std::int32_t parent;
    std::int32_t leader;
    bool isOrphan = false;   ///< its parent has ended, too
    bool isUnshown = false;  ///< a row has its first share with the second reading
    bool isOfLast = false;   ///< has waited for one reading
    std::uint64_t contribution;
    std::uint64_t unexplained;  ///< what is still to be found in somebody's growth
  };
  struct Growth {
    std::int32_t pid;
    std::uint64_t nanoseconds;
  };

  void bequeath();
  void findParents();
  [[nodiscard]] std::int32_t nextOneUp(const Ended& ended);
  void explain(Ended& ended, std::int32_t pid);
  void explainFurtherUp(Ended& ended);
  void credit(std::uint64_t capacity);
  void keepUnexplained();
  [[nodiscard]] Ended* find(std::int32_t pid);

  KnownProcesses& processes_;
  std::vector<Ended> ended_;
  std::vector<Growth> growths_;
};

}  // namespace vel
