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

/// The processors of one reading, -1 for an offline one, which has no ticks and does not run; empty
/// when there are no ticks to be had.
Order readOrder(LinuxKernel& kernel) {
  TickSample sample;
  std::vector<ProcessorState> states;
  if (!kernel.readTicks(sample)) {
    return {};
  }
  EXPECT_TRUE(kernel.readProcessorStates(states));
  for (std::size_t i = 0; i < states.size(); ++i) {
    const bool online = sample.processors.at(i) != TickSample::kNoProcessor;
    EXPECT_EQ(states[i].running, online) << i;
    EXPECT_EQ(states[i].identity, sample.processors[i]) << i;
    EXPECT_EQ(sample.counters.at(4 * i + TickSample::idle) != 0, online) << i;
  }
  return sample.processors;
}

/// Of each running processor the core.
std::string readCores(LinuxKernel& kernel) {
  std::vector<ProcessorState> states;
  std::string cores;
  EXPECT_TRUE(kernel.readProcessorStates(states));
  for (const ProcessorState& state : states) {
    cores += state.running ? std::to_string(state.core) + ' ' : "";
  }
  return cores;
}

/// A /proc/stat with a line for each of these.
std::string statOf(const Order& cpus) {
  std::string stat = "cpu  9 9 9 9\n";
  for (const std::int32_t cpu : cpus) {
    stat += "cpu" + std::to_string(cpu) + " 1 2 3 4\n";
  }
  return stat + "btime 1753430400\n";
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
  const Order smt = {0, 4, 1, 5, 2, 6, 3, 7};
  const std::string pairs = "0 0 1 1 2 2 3 3 ";
  const std::string eight = "0 1 2 3 4 5 6 7 ";
  const std::tuple<const char*, const char*, Order, std::string> cases[] = {
      {"single", "1 1 1 1 3/71 3 1700000123", {0}, "0 "},
      {"smt-8", "8 4 8 8 7/1204 3 1753430400", smt, pairs},
      {"hybrid",
       "16 12 16 16 7/613 3 1753430400",
       {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15},
       pairs + "4 5 6 7 8 9 10 11 "},
      {"offline", "8 3 5 8 7/613 3 1753430400", {0, 4, 2, 3, 7, -1, -1, -1}, "0 0 1 2 2 "},
      {"two-packages", "8 4 8 8 7/613 3 1753430400", smt, pairs},
      {"no-topology", "4 4 4 4 7/613 3 1753430400", {0, 1, 2, 3}, "0 1 2 3 "},
      {"arm-clusters", "8 8 8 8 7/613 3 1753430400", smt, eight},
      {"captured-vm", "2 2 2 2 72/87 3 1795378806", {0, 1}, "0 1 "}};
  for (const auto& [fixture, readings, order, cores] : cases) {
    SCOPED_TRACE(fixture);
    const MachineTree tree(fixture);
    LinuxKernel kernel(tree.proc(), tree.sys());
    EXPECT_EQ(readAll(kernel), readings);
    EXPECT_EQ(readOrder(kernel), order);
    EXPECT_EQ(readCores(kernel), cores);
  }
}

TEST(LinuxKernel, BelievesTheLinesOfStatWhateverSysfsSays) {
  // Eight processors are present, of which 0, 2, 3, 4 and 7 are online, 4 beside 0 and 7 beside 3.
  const std::tuple<Order, const char*, Order, const char*> cases[] = {
      {{0, 1}, "8 2 2 8 7/613 3 1753430400", {0, 1, -1, -1, -1, -1, -1, -1}, "0 1 "},
      {{3, 5, 6, 7}, "8 3 4 8 7/613 3 1753430400", {3, 7, 5, 6, -1, -1, -1, -1}, "0 0 1 2 "},
      {{7, 8}, "2 2 2 2 7/613 3 1753430400", {7, 8}, "0 1 "},
      {{60000}, "1 1 1 1 7/613 3 1753430400", {60000}, "0 "}};
  for (const auto& [lines, readings, order, cores] : cases) {
    SCOPED_TRACE(lines.front());
    const MachineTree tree("offline");
    LinuxKernel before(tree.proc(), tree.sys());
    readOrder(before);
    tree.write(kStat, statOf(lines));
    LinuxKernel fresh(tree.proc(), tree.sys());
    EXPECT_EQ(readAll(fresh), readings);
    for (LinuxKernel* kernel : {&before, &fresh}) {
      EXPECT_EQ(readOrder(*kernel), order);
      EXPECT_EQ(readCores(*kernel), cores);
    }
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

TEST(LinuxKernel, MakesTheOrderAnewWhenTheLinesAreOthers) {
  const MachineTree tree("smt-8");
  LinuxKernel kernel(tree.proc(), tree.sys());
  const Order all = {0, 4, 1, 5, 2, 6, 3, 7};
  const std::tuple<Order, Order, const char*> steps[] = {
      {{0, 1, 2, 3, 4, 5, 6, 7}, all, "0 0 1 1 2 2 3 3 "},
      {{0, 1, 2, 4, 5}, {0, 4, 1, 5, 2, -1, -1, -1}, "0 0 1 1 2 "},
      {{0, 1, 2, 4, 6}, {0, 4, 1, 2, 6, -1, -1, -1}, "0 0 1 2 2 "},  // as many
      {{0, 1, 2, 3, 4, 5, 6, 7}, all, "0 0 1 1 2 2 3 3 "}};
  for (const auto& [lines, order, cores] : steps) {
    tree.write(kStat, statOf(lines));
    EXPECT_EQ(readOrder(kernel), order);
    EXPECT_EQ(readCores(kernel), cores);
    EXPECT_EQ(kernel.logicalProcessorCount(), lines.size());
  }
  // What is only present is taken in when the processors are counted.
  tree.write(kPresent, "0-8\n");
  EXPECT_EQ(readOrder(kernel), all);
  EXPECT_EQ(kernel.processorCount(), 9U);
  EXPECT_EQ(readOrder(kernel), (Order{0, 4, 1, 5, 2, 6, 3, 7, -1}));
  // States, number and boot time are out of the text of the last sample, which is not read again
  // for them.
  tree.write(kStat, "cpu0 1 2 3 4\nbtime 2\n");
  EXPECT_EQ(kernel.logicalProcessorCount(), 8U);
  EXPECT_EQ(readCores(kernel), "0 0 1 1 2 2 3 3 ");
  EXPECT_EQ(kernel.bootTime().value_or(BootTime{}).seconds, 1753430400);
}

TEST(LinuxKernel, FailsAReadingWhileItsFileIsFaulty) {
  // What is replaced, by this content or by what is in angle brackets; the readings if that is so
  // from the start, and if it comes after sound ones, where it is another.
  const std::tuple<const char*, std::string, const char*, const char*> cases[] = {
      {kStat, "<nothing>", "0 0 0 0 7/613 3 -1", "8 3 5 0 7/613 3 1753430400"},
      {kStat, "cpu  1 2 3 4\ncpu0 1 2 3 4", "0 0 0 0 7/613 3 -1", "8 3 5 0 7/613 3 1753430400"},
      {kStat, "cpu0 1 2 3 4\n" + std::string(TextFile::kMaxSize, '\n'), "0 0 0 0 7/613 3 -1",
       "8 3 5 0 7/613 3 1753430400"},
      {kStat, "cpu0 1\n", "0 0 0 0 7/613 3 -1", "8 3 5 0 7/613 3 1753430400"},
      {kPresent, "0-7", "5 3 5 5 7/613 3 1753430400", nullptr},
      {"sys", "<nothing>", "5 5 5 5 7/613 3 1753430400", nullptr},
      {"proc/loadavg", "1.00 2.00 3.00 1/61", "8 3 5 8 -1/-1 3 1753430400", nullptr},
      {"proc", "<nothing>", "0 0 0 0 -1/-1 -1 -1", "8 3 5 0 -1/-1 -1 1753430400"}};
  for (const auto& [name, content, first, later] : cases) {
    SCOPED_TRACE(std::string(name) + ": " + content.substr(0, 30));
    const MachineTree tree("offline");
    LinuxKernel kernel(tree.proc(), tree.sys());
    const fs::path path = tree.absolute(name);
    const fs::path sound = tree.absolute("sound");
    for (const char* readings : {first, later != nullptr ? later : first}) {
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
