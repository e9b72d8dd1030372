// The system's processes, read again and again.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/kernel/Kernel.h"
#include "platform/linux/ApplicationProcess.h"
#include "platform/linux/Applications.h"
#include "platform/linux/DescriptorPool.h"
#include "platform/linux/EndedTime.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/KnownProcess.h"
#include "platform/linux/ProcPidStat.h"
#include "platform/linux/ProcessDirectory.h"

namespace vel {

/// When a reading is made.
struct ReadingTime {
  std::int64_t bootSeconds = 0;      ///< when the machine was started, since 1970; always the same
  std::uint64_t ticksSinceBoot = 0;  ///< suspended time included
};

/// Most processes sleep, and one that has not run since the last reading has changed nothing of its
/// own. Its CPU clock tells that for a fraction of what its stat file costs, so that only those are
/// read that are new, whose clock has moved, or whose parent has ended. What others can change
/// (reclaimed memory, the control group) is found because each process is read in one of
/// `kRotation` readings in any case. Where there are no clocks, every process is read each time.
///
/// What is reported as a process's parent is the first process of its application (`Applications`),
/// and as its CPU time what it contributes to that application's row (`EndedTime`). The sum over a
/// row never goes down as long as its first process lives.
///
/// Units are not read before a process is a second old: many are gone by then, and one that is put
/// into a unit of its own is so just after its start.
///
/// A process that ends between two of the steps is missing, at the latest from the next reading,
/// and no more than that. One whose pid was another's in the reading before is missing from one
/// reading, so that nobody takes it for that one. All storage is kept: nothing is allocated while
/// no more processes are there, and no more have ended since the last reading, than ever before.
class ProcessReader {
 public:
  static constexpr std::uint32_t kRotation = 64;

  explicit ProcessReader(ProcessDirectory& directory);

  /// Takes a new reading in place of the last. False, and the last one stays, when the processes
  /// cannot be listed.
  bool read(const ReadingTime& time);

  /// Overwrites `records` with those of the last reading, in ascending order of pid.
  void copyTo(std::vector<ProcessRecord>& records) const;

  /// Of a process in the last reading what held then, of any other what holds now, its parent being
  /// the kernel's; nothing when it cannot be read. `now` is called if the time matters.
  template <typename Now>
  std::optional<ProcessRecord> record(std::int32_t pid, Now now) {
    if (const KnownProcess* const process = processes_.find(pid)) {
      return process->record;
    }
    const std::optional<ReadingTime> time = now();
    return time ? readRecord(pid, *time) : std::nullopt;
  }

  /// Likewise. User and system add up to the process's contribution.
  std::optional<TaskFigures> figures(std::int32_t pid);

  /// Of the last reading: the first process of an application, and after it the others in ascending
  /// order of pid. Empty when there is no such application.
  [[nodiscard]] std::vector<ApplicationProcess> application(std::int32_t pid);

  /// What to call the application of that first process, see `programName`.
  [[nodiscard]] std::optional<std::string> applicationName(std::int32_t pid);

 private:
  using Unit = KnownProcess::Unit;
  using Command = decltype(ProcessRecord::command);

  struct Name {
    std::int32_t pid = 0;
    std::uint64_t startTicks = 0;
    Command command{};
    std::string text;
  };

  void updateKnown(const ReadingTime& time);
  bool update(KnownProcess& process, const ReadingTime& time);
  void retire(const KnownProcess& process);
  void addNew(const ReadingTime& time);
  void readOrphans(const ReadingTime& time);
  void settle(const ReadingTime& time);
  void leaveEarlyGrowth();
  void readUnits(const ReadingTime& time);

  std::optional<ProcessRecord> readRecord(std::int32_t pid, const ReadingTime& time);

  [[nodiscard]] std::optional<std::uint64_t> clockOf(std::int32_t pid) const;
  bool readStat(KnownProcess& process, const ReadingTime& time,
                const std::optional<std::uint64_t>& clock);
  void begin(KnownProcess& process, const ProcPidStat& stat, const ReadingTime& time) const;
  void setLineage(KnownProcess& process, const ProcPidStat& stat);
  void setEndedChildren(KnownProcess& process, const ProcPidStat& stat);
  void setFigures(KnownProcess& process, const ProcPidStat& stat,
                  const std::optional<std::uint64_t>& clock) const;
  [[nodiscard]] const Name* knownNameOf(const KnownProcess& process) const;
  [[nodiscard]] const KnownProcess& namesake(const KnownProcess& leader) const;

  [[nodiscard]] bool isOldEnoughForUnit(const KnownProcess& process, const ReadingTime& time) const;
  void ensureUnit(KnownProcess& process, const ReadingTime& time);
  void readUnit(KnownProcess& process);

  std::optional<std::string_view> readText(KnownProcess& process);
  std::optional<std::string_view> readText(FileDescriptor& file, std::int32_t pid,
                                           std::string_view name);

  ProcessDirectory& directory_;
  DescriptorPool pool_;
  std::uint64_t ticksPerSecond_;
  std::uint64_t pageSize_;
  std::uint64_t processors_;

  std::uint32_t reading_ = 0;
  std::optional<std::uint64_t> ticksBefore_;  ///< of the reading before
  bool hasLeftGrowth_ = false;                ///< to this reading
  KnownProcesses processes_;
  Applications applications_{processes_};
  EndedTime endedTime_{processes_};
  std::array<Name, 16> names_;  ///< of those that have been asked for, where it takes a file
  std::size_t nextName_ = 0;
  std::vector<std::int32_t> listed_;
  std::vector<std::int32_t> ended_;  ///< whose children have, or may have, another parent now
  std::vector<std::int32_t> endedBefore_;
  std::vector<std::int32_t> endedLeaders_;
};

}  // namespace vel
