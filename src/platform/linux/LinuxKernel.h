// The kernel's figures from procfs and sysfs.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/kernel/Kernel.h"
#include "platform/linux/ApplicationProcess.h"
#include "platform/linux/CpuList.h"
#include "platform/linux/ProcessCount.h"
#include "platform/linux/ProcessDirectory.h"
#include "platform/linux/ProcessReader.h"
#include "platform/linux/TextFile.h"
#include "platform/linux/TickCounters.h"
#include "platform/linux/Topology.h"

namespace vel {

/// The processors with a line in /proc/stat are those online, whatever sysfs says: containers have
/// a /proc/stat of their own, with other numbers. Present are those that sysfs lists, where these
/// lines are among them, else the lines alone. `readTicks` and `processorCount` read the lines, all
/// else goes by those of the latest successful reading, or by a new one where there has been none.
/// The order is of the processors present; it is made when first needed and again when the lines
/// are others, by `physicalCoreCount`, and by `processorCount` when others are present. All storage
/// is kept, so that readings allocate nothing unless the order is made or there is more to hold
/// than ever before.
class LinuxKernel : public Kernel {
 public:
  /// The roots of procfs and sysfs, or of files captured from another machine's.
  explicit LinuxKernel(const std::filesystem::path& proc = "/proc",
                       const std::filesystem::path& sys = "/sys");

  std::optional<std::uint32_t> processorCount() override;
  std::optional<std::uint32_t> physicalCoreCount() override;
  std::optional<std::uint32_t> logicalProcessorCount() override;

  bool readTicks(TickSample& sample) override;
  bool readProcessorStates(std::vector<ProcessorState>& states) override;
  std::optional<SystemLoad> systemLoad() override;
  int loadAverages(std::array<double, 3>& averages) override;

  /// In whole seconds, and the same at every call: the kernel's own idea of it moves when the clock
  /// is set (`SystemClock` does not, either).
  std::optional<BootTime> bootTime() override;

  /// A status is the letter of /proc/<pid>/stat. Processes whose files may not be read, as under
  /// hidepid, are left out.
  bool listProcesses(std::vector<ProcessRecord>& records) override;
  std::optional<ProcessRecord> process(std::int32_t pid) override;

  /// The sum of both times is exact, and user time is accounted in clock ticks, wherever
  /// `sharesPids`; elsewhere both are in clock ticks.
  std::optional<TaskFigures> taskFigures(std::int32_t pid) override;
  std::int32_t ownPid() override;
  std::optional<std::string> processName(std::int32_t pid) override;
  std::optional<std::string> executablePath(std::int32_t pid) override;

  /// Takes a new reading. The processes of the row with that pid, which comes first; nothing when
  /// there is no such row.
  std::vector<ApplicationProcess> application(std::int32_t pid);

  /// Whether the pids in `proc` are those of this process's own namespace, so that one may act on
  /// them.
  [[nodiscard]] bool sharesPids() const { return processDirectory_.sharesPids(); }

  [[nodiscard]] ProcessDirectory& processDirectory() { return processDirectory_; }

 private:
  bool readStat();
  bool hasLines();
  CpuList readPresent();
  void makeOrder(CpuList present);
  bool ensureOrder();

  std::optional<ReadingTime> readingTime();

  [[nodiscard]] CoreIdentity readCore(std::int32_t cpu) const;

  std::filesystem::path cpuDirectory_;
  TextFile statFile_;
  TextFile loadavgFile_;
  TextFile presentFile_;
  ProcessCount processes_;
  ProcessDirectory processDirectory_;
  ProcessReader processReader_;

  TickCounters counters_;
  Topology topology_;
  CpuList present_;                     ///< the processors of the order
  CpuList online_;                      ///< those with a line when it was made
  std::vector<std::size_t> positions_;  ///< of those, by number, the place in the order
  std::optional<BootTime> bootTime_;
  bool statRead_ = false;  ///< statFile_ holds a text that a caller has made sense of
};

}  // namespace vel
