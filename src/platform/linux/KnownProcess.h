// The processes of the latest reading, and what is kept of each from reading to reading.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

#include "platform/kernel/Kernel.h"
#include "platform/linux/DescriptorPool.h"

namespace vel {

struct KnownProcess {
  /// The pid of the one that starts all others.
  static constexpr std::int32_t kFirst = 1;

  enum class Unit : std::uint8_t { unread, read, never };

  ProcessRecord record;  ///< as it is reported, the parent being the application's first process
  TaskFigures own;       ///< user and system sum up to the CPU clock, where there is one
  std::uint64_t startTicks = 0;  ///< with the pid, tells a process from all before and after it
  std::uint64_t unit = 0;        ///< a hash of the unit's path, 0 for none
  /// Of the children that have been waited for, as the kernel has it: whosever they were.
  std::uint64_t endedChildren = 0;
  /// In nanoseconds, what the process counts for beyond its own CPU time: ended processes of its
  /// application. Below 0 for one that has brought time with it that another row shows.
  std::int64_t credit = 0;

  // The kernel's.
  std::int32_t parent = 0;
  std::int32_t group = 0;
  std::int32_t session = 0;
  std::int32_t terminal = 0;

  std::int32_t leader = 0;         ///< the first process of its application; 0 before that is known
  std::uint32_t leadsSince = 0;    ///< of a leader: the reading in which it became one
  std::uint32_t firstReading = 0;  ///< that had the process
  std::uint32_t recentMicroseconds = 0;  ///< of CPU time, that of earlier readings fading
  DescriptorPool::Slot slot = DescriptorPool::kNoSlot;
  std::uint8_t quietReadings = 0;  ///< since it last ran, as far as that is counted
  Unit unitState = Unit::unread;
  bool isSessionUnit = false;  ///< its unit is a login session: many applications
  bool controlsJobs = false;   ///< an interactive shell
  bool isJob = false;          ///< leads what has been typed into an interactive shell
  bool isOrphan = false;       ///< its parent is not the one that has started it
  bool isPlaced = false;       ///< `leader` is what the rules say
  bool isNewborn = false;      ///< it was started between its first reading and the one before
  bool hasEnded = false;       ///< and waits for its parent
  bool mustBeRead = false;     ///< by the next reading, whether it has run or not

  [[nodiscard]] bool isKernelThread() const { return unitState == Unit::never; }
  [[nodiscard]] bool leads() const { return leader == record.pid; }

  [[nodiscard]] std::uint64_t cpuTime() const {
    return own.userNanoseconds + own.systemNanoseconds;
  }

  void addRecent(std::uint64_t nanoseconds) {
    constexpr std::uint64_t kMost = std::numeric_limits<std::uint32_t>::max();
    recentMicroseconds =
        static_cast<std::uint32_t>(std::min(recentMicroseconds + nanoseconds / 1000, kMost));
  }

  // Unsigned, as a captured machine's may be any numbers.

  void addCredit(std::uint64_t nanoseconds) {
    credit = static_cast<std::int64_t>(static_cast<std::uint64_t>(credit) + nanoseconds);
  }

  /// Nanoseconds that its application's row has of it.
  [[nodiscard]] std::uint64_t contribution() const {
    const auto sum = static_cast<std::int64_t>(cpuTime() + static_cast<std::uint64_t>(credit));
    return static_cast<std::uint64_t>(std::max<std::int64_t>(sum, 0));
  }
};

/// In ascending order of pid.
class KnownProcesses {
 public:
  std::vector<KnownProcess> all;

  /// Pids of processes, some of them gone, to which an application is to be given.
  std::vector<std::int32_t> unplaced;

  void unplace(KnownProcess& process) {
    if (std::exchange(process.isPlaced, false) || process.leader == 0) {
      unplaced.push_back(process.record.pid);
    }
  }

  /// To be called once `all` has other pids.
  void index() {
    pids_.clear();
    for (const KnownProcess& process : all) {
      pids_.push_back(process.record.pid);
    }
  }

  [[nodiscard]] KnownProcess* find(std::int32_t pid) {
    // Who asks for all goes down the list.
    if (latest_ > pids_.size() || latest_ == 0 || pids_[--latest_] != pid) {
      const auto found = std::lower_bound(pids_.begin(), pids_.end(), pid);
      latest_ = static_cast<std::size_t>(found - pids_.begin());
    }
    return latest_ < pids_.size() && pids_[latest_] == pid ? &all[latest_] : nullptr;
  }

 private:
  std::vector<std::int32_t> pids_;  ///< quicker to search
  std::size_t latest_ = 0;          ///< where the latest one found stands
};

}  // namespace vel
