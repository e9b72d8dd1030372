// A machine of any size as files, for tests and benchmarks.
#pragma once

#include <array>
#include <cstdint>
#include <functional>

#include "support/MachineTree.h"

namespace vel::test {

/// The threads of one core are numbered as far apart as they can be, as is usual on x86: first
/// every core's first thread, package by package, then every core's second.
struct MachineShape {
  int packages = 1;
  int coresPerPackage = 1;
  int threadsPerCore = 1;

  [[nodiscard]] int cores() const { return packages * coresPerPackage; }
  [[nodiscard]] int processors() const { return cores() * threadsPerCore; }
};

/// The ten columns of a processor's line in /proc/stat.
using StatColumns = std::array<std::uint64_t, 10>;
using StatColumnsOf = std::function<StatColumns(int cpu)>;

/// Writes a machine that has every processor online: /proc/stat, /proc/loadavg, 100 processes, and
/// their list and the topology in sysfs.
void writeSyntheticMachine(const MachineTree& tree, const MachineShape& shape,
                           const StatColumnsOf& columnsOf);

/// Writes /proc/stat alone, as the next reading is to find it. Its intr line is as long as that of
/// a machine of this size.
void writeSyntheticStat(const MachineTree& tree, int processors, const StatColumnsOf& columnsOf);

}  // namespace vel::test
