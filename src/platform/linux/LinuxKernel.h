// The kernel's figures from procfs and sysfs.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <vector>

#include "platform/kernel/Kernel.h"
#include "platform/linux/CpuList.h"
#include "platform/linux/ProcessCount.h"
#include "platform/linux/TextFile.h"
#include "platform/linux/Topology.h"

namespace vel {

/// The processors of the order are those present; it is made when first needed and again by
/// `physicalCoreCount`, and by `processorCount` when others are present. Where sysfs does not list
/// the processors, those with a line in /proc/stat count as present and online; it is read again
/// each time that this is asked for. Everything but
/// making the order allocates nothing once it has been called.
class LinuxKernel final : public Kernel {
 public:
  /// The roots of procfs and sysfs, or of files captured from another machine's.
  explicit LinuxKernel(const std::filesystem::path& proc = "/proc",
                       const std::filesystem::path& sys = "/sys");

  std::optional<std::uint32_t> processorCount() override;
  std::optional<std::uint32_t> physicalCoreCount() override;
  std::optional<std::uint32_t> logicalProcessorCount() override;

  /// system has the time of interrupts and the time stolen by a hypervisor inside, idle that of
  /// waiting for I/O.
  bool readTicks(TickSample& sample) override;
  bool readProcessorStates(std::vector<ProcessorState>& states) override;
  std::optional<SystemLoad> systemLoad() override;
  int loadAverages(std::array<double, 3>& averages) override;

  /// In whole seconds, from the text that the last successful `readTicks` read: the file is dear on
  /// large machines.
  std::optional<BootTime> bootTime() override;

  bool listProcesses(std::vector<ProcessRecord>& records) override;
  std::optional<ProcessRecord> process(std::int32_t pid) override;
  std::optional<TaskFigures> taskFigures(std::int32_t pid) override;
  std::int32_t ownPid() override;
  std::optional<std::string> executablePath(std::int32_t pid) override;

 private:
  bool readPresentAndOnline();
  bool readOnline();
  bool readCpusWithLines(CpuList& cpus);
  bool makeOrder();
  bool ensureOrder();

  /// Visits the processors' lines.
  template <typename Visit>
  bool readStat(Visit visit);

  [[nodiscard]] CoreIdentity readCore(std::int32_t cpu) const;

  std::filesystem::path cpuDirectory_;
  TextFile statFile_;
  TextFile loadavgFile_;
  TextFile presentFile_;
  TextFile onlineFile_;
  ProcessCount processes_;

  CpuList present_;
  CpuList online_;

  Topology topology_;
  CpuList arranged_;                     ///< the processors of the order, by number
  std::vector<std::int32_t> positions_;  ///< by processor number, the place in the order or -1
  bool statRead_ = false;                ///< statFile_ holds a text whose processors are sound
};

}  // namespace vel
