// LinuxKernel on machines captured as files and on the one that runs the test.
#include "platform/linux/LinuxKernel.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "support/MachineTree.h"
#include "support/SyntheticMachine.h"

namespace vel::test {
namespace {

namespace fs = std::filesystem;

using Order = std::vector<std::int32_t>;

constexpr const char* kStat = "proc/stat";
constexpr const char* kPresent = "sys/devices/system/cpu/present";
constexpr const char* kOnline = "sys/devices/system/cpu/online";

/// The processors of one reading, -1 for an offline one, which has no ticks and does not run; empty
/// when there are no ticks to be had.
Order readOrder(LinuxKernel& kernel) {
  TickSample sample;
  std::vector<ProcessorState> states;
  EXPECT_TRUE(kernel.readProcessorStates(states));
  if (!kernel.readTicks(sample)) {
    return {};
  }
  for (std::size_t i = 0; i < states.size(); ++i) {
    const bool online = sample.processors.at(i) != TickSample::kNoProcessor;
    EXPECT_EQ(states[i].running, online) << i;
    EXPECT_EQ(sample.counters.at(4 * i + TickSample::idle) != 0, online) << i;
  }
  return sample.processors;
}

/// Processors, cores, online, processors with ticks or without, tasks/threads, averages and the
/// boot time.
std::string readAll(LinuxKernel& kernel) {
  std::array<double, 3> averages{};
  std::ostringstream all;
  all << kernel.processorCount().value_or(0) << ' ' << kernel.physicalCoreCount().value_or(0) << ' '
      << kernel.logicalProcessorCount().value_or(0) << ' ' << readOrder(kernel).size() << ' ';
  const auto load = kernel.systemLoad().value_or(SystemLoad{.tasks = -1, .threads = -1});
  const auto boot = kernel.bootTime().value_or(BootTime{.seconds = -1, .microseconds = 0});
  all << load.tasks << '/' << load.threads << ' ' << kernel.loadAverages(averages) << ' '
      << boot.seconds;
  return all.str();
}

TEST(LinuxKernel, ReadsCapturedMachines) {
  const std::tuple<const char*, const char*, Order> cases[] = {
      {"single", "1 1 1 1 3/71 3 1700000123", {0}},
      {"smt-8", "8 4 8 8 7/1204 3 1753430400", {0, 4, 1, 5, 2, 6, 3, 7}},
      {"hybrid",
       "16 12 16 16 7/613 3 1753430400",
       {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15}},
      {"offline", "8 3 5 8 7/613 3 1753430400", {0, 4, 2, 3, 7, -1, -1, -1}},
      {"two-packages", "8 4 8 8 7/613 3 1753430400", {0, 4, 1, 5, 2, 6, 3, 7}},
      {"no-topology", "4 4 4 4 7/613 3 1753430400", {0, 1, 2, 3}},
      {"arm-clusters", "8 8 8 8 7/613 3 1753430400", {0, 4, 1, 5, 2, 6, 3, 7}},
      {"captured-vm", "2 2 2 2 72/87 3 1795378806", {0, 1}}};
  for (const auto& [fixture, readings, order] : cases) {
    SCOPED_TRACE(fixture);
    const MachineTree tree(fixture);
    LinuxKernel kernel(tree.proc(), tree.sys());
    EXPECT_EQ(readAll(kernel), readings);
    EXPECT_EQ(readOrder(kernel), order);
  }
}

TEST(LinuxKernel, MakesNeighboursOfThreadsNumberedFarApart) {
  const MachineTree tree;
  writeSyntheticMachine(tree, {2, 64, 2}, [](int cpu) {
    return StatColumns{static_cast<std::uint64_t>(cpu), 2, 3, 0xFFFF'FFFF, 5, 6, 7, 8, 9, 10};
  });
  LinuxKernel kernel(tree.proc(), tree.sys());
  EXPECT_EQ(readAll(kernel), "256 128 256 256 100/321 3 1753430400");
  TickSample sample;
  EXPECT_TRUE(kernel.readTicks(sample));
  std::vector<std::uint64_t> counters;
  for (std::uint64_t core = 0; core < 128; ++core) {
    for (const std::uint64_t cpu : {core, core + 128}) {
      counters.insert(counters.end(), {cpu, 3 + 6 + 7 + 8, 0x1'0000'0004, 2});
    }
  }
  EXPECT_EQ(sample.counters, counters);
}

TEST(LinuxKernel, KeepsTheOrderUntilTheTopologyIsReadAnew) {
  const MachineTree tree("smt-8");
  LinuxKernel kernel(tree.proc(), tree.sys());
  const auto setOnline = [&tree](int processors) {
    writeSyntheticStat(tree, processors, [](int) { return StatColumns{1, 2, 3, 4}; });
    tree.write(kOnline, "0-" + std::to_string(processors - 1) + '\n');
  };
  const Order all = {0, 4, 1, 5, 2, 6, 3, 7};
  const std::tuple<int, Order, Order> steps[] = {
      {8, all, all},
      {4, {0, -1, 1, -1, 2, -1, 3, -1}, {0, 1, 2, 3, -1, -1, -1, -1}},
      {8, {0, 1, 2, 3, 4, 5, 6, 7}, all}};
  for (const auto& [online, kept, anew] : steps) {
    setOnline(online);
    EXPECT_EQ(kernel.processorCount(), 8U);
    EXPECT_EQ(readOrder(kernel), kept);
    EXPECT_EQ(kernel.physicalCoreCount(), 4U);
    EXPECT_EQ(readOrder(kernel), anew);
  }
  // A processor that was not there before is taken in when the processors are counted.
  tree.write(kPresent, "0-8\n");
  setOnline(9);
  EXPECT_EQ(readOrder(kernel), all);
  EXPECT_EQ(kernel.processorCount(), 9U);
  EXPECT_EQ(readOrder(kernel), (Order{0, 4, 1, 5, 2, 6, 3, 7, 8}));
  // The boot time is out of the text of the last sample, which is not read again for it.
  tree.write(kStat, "btime 2\n");
  EXPECT_EQ(kernel.bootTime().value_or(BootTime{}).seconds, 1753430400);
}

TEST(LinuxKernel, FailsAReadingWhileItsFileIsFaulty) {
  // What is replaced, by this content or by what is in angle brackets.
  const std::tuple<const char*, std::string, const char*> cases[] = {
      {kStat, "<nothing>", "8 3 5 0 7/613 3 -1"},
      {kStat, "cpu  1 2 3 4\ncpu0 1 2 3 4", "8 3 5 0 7/613 3 -1"},
      {kStat, "cpu0 1 2 3 4\n" + std::string(TextFile::kMaxSize, '\n'), "8 3 5 0 7/613 3 -1"},
      {kStat, "cpu0 1\nbtime 2\n", "8 3 5 0 7/613 3 2"},
      {kOnline, "0,2-4", "5 3 5 5 7/613 3 1753430400"},
      {"sys", "<nothing>", "5 5 5 5 7/613 3 1753430400"},
      {"proc/loadavg", "1.00 2.00 3.00 1/61", "8 3 5 8 -1/-1 3 1753430400"},
      {"proc", "<nothing>", "8 3 5 0 -1/-1 -1 -1"}};
  for (const auto& [name, content, readings] : cases) {
    SCOPED_TRACE(std::string(name) + ": " + content.substr(0, 30));
    const MachineTree tree("offline");
    LinuxKernel kernel(tree.proc(), tree.sys());
    const fs::path path = tree.absolute(name);
    const fs::path sound = tree.absolute("sound");
    // The first fault is there from the start, the second comes after sound readings.
    for (int time = 0; time < 2; ++time) {
      fs::rename(path, sound);
      if (content != "<nothing>") {
        tree.write(name, content);
      }
      EXPECT_EQ(readAll(kernel), readings);
      fs::remove_all(path);
      fs::rename(sound, path);
      EXPECT_EQ(readAll(kernel), "8 3 5 8 7/613 3 1753430400");
    }
  }
}

// What holds on any Linux.
TEST(LiveMachine, CountsWhatTheListingShows) {
  LinuxKernel kernel;
  const SystemLoad load = kernel.systemLoad().value_or(SystemLoad{});
  int listed = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
    listed += entry.path().filename().string().find_first_not_of("0123456789") == std::string::npos;
  }
  // The two are not of one moment. In a pid namespace of its own, or under hidepid, a listing shows
  // only some of the system's.
  EXPECT_GE(load.tasks, 1);
  EXPECT_GE(load.tasks + 20, listed);
}

TEST(LiveMachine, AKeptFileThatIsGoneIsAFailedReading) {
  const int number = ::dup(STDERR_FILENO);
  TextFile file("/proc/self/fdinfo/" + std::to_string(number));
  EXPECT_TRUE(file.read());
  ::close(number);
  EXPECT_FALSE(file.read());
}

}  // namespace
}  // namespace vel::test
