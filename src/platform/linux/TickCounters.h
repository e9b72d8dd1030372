// The processors of /proc/stat, and what their counters have counted.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>
#include <vector>

#include "platform/kernel/Kernel.h"
#include "platform/linux/CpuList.h"
#include "platform/linux/ProcStat.h"

namespace vel {

/// On a machine whose counters have 32 bits a column wraps there, each at its own time, so each is
/// followed by itself before columns are added. A wrap and a step back, as idle and iowait take
/// them (Documentation/filesystems/proc.rst), are told apart by size: 2^31 ticks, 248 days, is the
/// most that a counter below 2^32 gains or steps back between two texts. What a processor that
/// comes back after it had no line has counted before is of no account.
class TickCounters {
 public:
  struct Processor {
    CpuLine line;  ///< as it was read
    /// By TickSample::State: system has the time of interrupts and the time stolen by a hypervisor
    /// inside, idle that of waiting for I/O.
    std::array<std::uint64_t, TickSample::kStates> counters{};
  };

  /// Takes a new text of /proc/stat. False where `forEachCpu` finds it unsound: no processor comes
  /// or goes then. Allocates only when the processors are others.
  bool read(std::string_view stat);

  /// Those with a line in the latest sound text; none before there is one.
  [[nodiscard]] const CpuList& cpus() const { return cpus_; }

  /// The same, ascending.
  [[nodiscard]] const std::vector<Processor>& processors() const { return processors_; }

 private:
  void readOthers(std::string_view stat);
  static void begin(Processor& processor, const CpuLine& line);
  static void follow(Processor& processor, const CpuLine& line);

  CpuList cpus_;
  std::vector<Processor> processors_;
};

}  // namespace vel
