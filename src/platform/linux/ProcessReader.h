// The system's processes, read again and again.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/kernel/Kernel.h"
#include "platform/linux/ApplicationProcess.h"
#include "platform/linux/DescriptorPool.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/ProcPidStat.h"
#include "platform/linux/ProcessDirectory.h"

namespace vel {

/// When a reading is made.
struct ReadingTime {
  std::int64_t bootSeconds = 0;      ///< when the machine was started, since 1970
  std::uint64_t ticksSinceBoot = 0;  ///< suspended time included
};

/// Most processes sleep, and one that has not run since the last reading has changed nothing of its
/// own. Its CPU clock tells that for a fraction of what its stat file costs, so that only those are
/// read that are new, whose clock has moved, or whose parent has ended. What others can change
/// (reclaimed memory, the control group) is found because each process is read in one of
/// `kRotation` readings in any case. Where there are no clocks, every process is read each time.
///
/// A process whose parent is in another unit of the service manager counts as started by the first
/// process. Units are read only where there are two to compare, and not before a process is a
/// second old: many are gone by then, and one that is put into a unit of its own is so just after
/// its start.
///
/// A process that ends between two of the steps is missing, at the latest from the next reading,
/// and no more than that. All storage is kept: nothing is allocated while no more processes are
/// there, and no more have ended since the last reading, than ever before.
class ProcessReader {
 public:
  static constexpr std::uint32_t kRotation = 64;

  explicit ProcessReader(ProcessDirectory& directory);

  /// Takes a new reading in place of the last. False, and the last one stays, when the processes
  /// cannot be listed.
  bool read(const ReadingTime& time);

  /// Overwrites `records` with those of the last reading, in ascending order of pid.
  void copyTo(std::vector<ProcessRecord>& records) const;

  /// Of a process in the last reading what held then, of any other what holds now; nothing when it
  /// cannot be read. `now` is called if the time matters.
  template <typename Now>
  std::optional<ProcessRecord> record(std::int32_t pid, Now now) {
    if (const Process* const process = find(pid)) {
      return process->record;
    }
    const std::optional<ReadingTime> time = now();
    return time ? readRecord(pid, *time) : std::nullopt;
  }

  /// Likewise.
  std::optional<TaskFigures> figures(std::int32_t pid);

  /// Of the last reading: the process that counts as started by the first, and after it those whose
  /// parent it is said to be, in ascending order of pid. Empty when there is no such process.
  [[nodiscard]] std::vector<ApplicationProcess> application(std::int32_t pid);

 private:
  enum class Unit : std::uint8_t { unread, read, never };

  struct Process {
    ProcessRecord record;
    TaskFigures figures;           ///< user and system sum up to the CPU clock, where there is one
    std::uint64_t startTicks = 0;  ///< with the pid, tells a process from all before and after it
    std::uint64_t unit = 0;        ///< a hash of the unit's path, 0 for none
    std::int32_t parent = 0;       ///< the kernel's, whatever the record says
    DescriptorPool::Slot slot = DescriptorPool::kNoSlot;
    std::uint32_t recentMicroseconds = 0;  ///< of CPU time, gained with the last reading
    bool controlsJobs = false;
    std::uint8_t quietReadings = 0;  ///< since it last ran, as far as that is counted
    Unit unitState = Unit::unread;
    bool hasEnded = false;  ///< and waits for its parent

    [[nodiscard]] std::uint64_t cpuTime() const {
      return figures.userNanoseconds + figures.systemNanoseconds;
    }
  };

  void followClock(const ReadingTime& time);
  void updateKnown(const ReadingTime& time);
  bool update(Process& process, const ReadingTime& time);
  void retire(const Process& process);
  void addNew(const ReadingTime& time);
  void readOrphans(const ReadingTime& time);
  void reportParents(const ReadingTime& time);

  Process* find(std::int32_t pid);
  std::optional<ProcessRecord> readRecord(std::int32_t pid, const ReadingTime& time);

  [[nodiscard]] std::optional<std::uint64_t> clockOf(std::int32_t pid) const;
  bool readStat(Process& process, const ReadingTime& time,
                const std::optional<std::uint64_t>& clock);
  void begin(Process& process, const ProcPidStat& stat, const ReadingTime& time) const;
  void setFigures(TaskFigures& figures, const ProcPidStat& stat,
                  const std::optional<std::uint64_t>& clock) const;

  [[nodiscard]] bool mayHaveUnit(const Process& process, const ReadingTime& time) const;
  bool isBoundary(Process& process, Process& parent);
  void ensureUnit(Process& process);
  void readUnit(Process& process);

  std::optional<std::string_view> readText(Process& process);
  std::optional<std::string_view> readText(FileDescriptor& file, std::int32_t pid,
                                           std::string_view name);

  ProcessDirectory& directory_;
  DescriptorPool pool_;
  std::uint64_t ticksPerSecond_;
  std::uint64_t pageSize_;

  std::uint32_t reading_ = 0;
  std::int64_t bootSeconds_ = 0;    ///< that the starts of the known processes go by
  std::vector<Process> processes_;  ///< in ascending order of pid
  std::vector<std::int32_t> pids_;  ///< theirs, in the same order: quicker to search
  std::vector<std::int32_t> listed_;
  std::vector<std::int32_t> ended_;  ///< whose children have, or may have, another parent now
  std::vector<std::int32_t> endedBefore_;
};

}  // namespace vel
