// What one refresh costs, beside what the kernel (or the file system) takes to produce the texts
// that it reads.
#include <benchmark/benchmark.h>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "module/VELModuleController.h"
#include "platform/foundation/Clock.h"
#include "platform/linux/LinuxKernel.h"
#include "support/InstalledPlatform.h"
#include "support/SyntheticMachine.h"

namespace vel::test {
namespace {

/// The module over the procfs and sysfs at the given roots.
struct Machine {
  Machine(const std::filesystem::path& proc, const std::filesystem::path& sys)
      : machine(proc, sys) {}

  void refresh() {
    controller.updateModel();
    controller.updateViews();
  }

  InstalledPlatform<LinuxKernel, SystemClock> machine;
  VELModuleController controller{machine.bundle, {}};
};

std::size_t readToEnd(int file, std::vector<char>& buffer) {
  std::size_t size = 0;
  for (;;) {
    const ssize_t got =
        pread(file, buffer.data() + size, buffer.size() - size, static_cast<off_t>(size));
    if (got <= 0) {
      return size;
    }
    size += static_cast<std::size_t>(got);
  }
}

void updateModelLive(benchmark::State& state) {
  Machine machine("/proc", "/sys");
  machine.refresh();
  for (auto _ : state) {
    machine.refresh();
  }
}
BENCHMARK(updateModelLive);

/// The same readings without the module: each file on a kept descriptor, and the beginning of
/// /proc's listing with its link count.
void kernelTextsLive(benchmark::State& state) {
  const std::array files = {open("/proc/stat", O_RDONLY | O_CLOEXEC),
                            open("/proc/loadavg", O_RDONLY | O_CLOEXEC),
                            open("/proc/loadavg", O_RDONLY | O_CLOEXEC)};
  const int proc = open("/proc", O_RDONLY | O_CLOEXEC | O_DIRECTORY);
  std::vector<char> buffer(std::size_t{1} << 20U);
  for (auto _ : state) {
    for (const int file : files) {
      benchmark::DoNotOptimize(readToEnd(file, buffer));
    }
    lseek(proc, 0, SEEK_SET);
    benchmark::DoNotOptimize(getdents64(proc, buffer.data(), 1024));
    benchmark::DoNotOptimize(getdents64(proc, buffer.data(), 1024));
    struct stat status {};
    benchmark::DoNotOptimize(fstat(proc, &status));
  }
  for (const int file : files) {
    close(file);
  }
  close(proc);
}
BENCHMARK(kernelTextsLive);

/// Busy in every column and different in every sample, so that no share is trivial.
StatColumns columnsOf(int cpu, std::uint64_t sample) {
  const auto base = static_cast<std::uint64_t>(cpu) + 1;
  StatColumns columns{};
  for (std::size_t i = 0; i < columns.size(); ++i) {
    columns[i] = 1'000'000 * base + sample * (i + 1) * (base % 7 + 1);
  }
  return columns;
}

MachineShape shapeOf(std::int64_t processors) {
  return {.packages = processors > 256 ? 2 : 1,
          .coresPerPackage = static_cast<int>(processors) / (processors > 256 ? 4 : 2),
          .threadsPerCore = 2};
}

void updateModelTree(benchmark::State& state) {
  const MachineTree tree;
  writeSyntheticMachine(tree, shapeOf(state.range(0)), [](int cpu) { return columnsOf(cpu, 0); });
  Machine machine(tree.proc(), tree.sys());
  machine.refresh();
  writeSyntheticStat(tree, static_cast<int>(state.range(0)),
                     [](int cpu) { return columnsOf(cpu, 1); });
  for (auto _ : state) {
    machine.refresh();
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(updateModelTree)->Arg(8)->Arg(256)->Arg(1024)->Complexity(benchmark::oN);

void treeTexts(benchmark::State& state) {
  const MachineTree tree;
  writeSyntheticMachine(tree, shapeOf(state.range(0)), [](int cpu) { return columnsOf(cpu, 0); });
  const std::array paths = {tree.proc() / "stat", tree.proc() / "loadavg", tree.proc() / "loadavg"};
  std::vector<char> buffer(std::size_t{1} << 20U);
  for (auto _ : state) {
    for (const auto& path : paths) {
      const int file = open(path.c_str(), O_RDONLY | O_CLOEXEC);
      benchmark::DoNotOptimize(readToEnd(file, buffer));
      close(file);
    }
    const int proc = open(tree.proc().c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY);
    while (getdents64(proc, buffer.data(), 1024) > 0) {
    }
    close(proc);
  }
  state.SetComplexityN(state.range(0));
}
BENCHMARK(treeTexts)->Arg(8)->Arg(256)->Arg(1024)->Complexity(benchmark::oN);

}  // namespace
}  // namespace vel::test

BENCHMARK_MAIN();
