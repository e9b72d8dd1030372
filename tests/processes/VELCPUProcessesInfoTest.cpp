// Who is folded into whom, what is summed, shares, rankings, the alert list, texts and storage.
#include "processes/VELCPUProcessesInfo.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "processes/TopFive.h"
#include "support/CountAllocations.h"
#include "support/ScriptedPlatform.h"
#include "support/TemporaryDirectory.h"

namespace vel::test {
namespace {

class ProcessesTest : public testing::Test {
 protected:
  using Process = ScriptedKernel::Process;

  /// Starts a process `age` whole seconds ago that has used `cpuSeconds` in one thread.
  Process& start(std::int32_t pid, std::int32_t parent, std::string_view name,
                 double cpuSeconds = 0, double age = 100) {
    Process& process = machine.kernel.processes[pid];
    process = {};
    process.record = {.pid = pid,
                      .parent = parent,
                      .startSeconds = static_cast<std::int64_t>(machine.clock.seconds - age),
                      .status = 1};
    process.figures = TaskFigures{.threads = 1};
    std::copy(name.begin(), name.end(), process.record.command.begin());
    use(pid, cpuSeconds);
    return process;
  }
  void use(std::int32_t pid, double cpuSeconds) {
    machine.kernel.processes.at(pid).figures->userNanoseconds +=
        static_cast<std::uint64_t>(std::llround(cpuSeconds * 1e9));
  }
  void readAfter(double seconds) {
    machine.clock.sleep(seconds);
    info.getAllProcessInfos();
  }
  const ProcessTable::Entry& entry(std::int32_t pid) {
    const ProcessTable::Entry* const found = info.allProcInfos().find(pid);
    return found == nullptr ? throw std::out_of_range("no entry") : *found;
  }

  ScriptedPlatform machine;
  VELCPUProcessesInfo info;
};

/// Such as "10 terminal <11; 11 - <12".
std::string describe(const ProcessTable& table) {
  std::string text;
  for (std::int32_t pid = 1; pid < 50; ++pid) {
    if (const ProcessTable::Entry* const entry = table.find(pid)) {
      text += (text.empty() ? "" : "; ") + std::to_string(pid) + " ";
      text += entry->isTopLevel() ? entry->name() : "-";
      table.forEachChild(*entry, [&](std::int32_t child) { text += " <" + std::to_string(child); });
    }
  }
  return text;
}

TEST_F(ProcessesTest, FoldsChildrenIntoTheirParents) {
  struct Listed {
    std::int32_t pid;
    std::int32_t parent;
    std::string_view name;
    std::optional<std::int32_t> parentNow = {};
    bool gone = false;
  };
  const std::pair<std::vector<Listed>, const char*> cases[] = {
      {{}, ""},
      {{{1, 0, "init"}, {2, 0, "k"}, {3, 1, "%s\x1b[1m\xff<b>&%n123"}},
       "1 init; 2 k; 3 %s\x1b[1m\xff<b>&%n123"},
      // A shell in a terminal.
      {{{1, 0, "init"}, {10, 1, "term"}, {11, 10, "login"}, {12, 11, "sh"}, {13, 12, "vi"}},
       "1 init; 10 term <11; 11 - <12; 12 - <13"},
      {{{2, 1, "a"}, {3, 2, "b"}, {4, 2, "c"}, {10, 20, "d"}, {20, 1, "e"}}, "2 a <4 <3; 20 e <10"},
      {{{2, 1, "a"}, {3, 1, ""}, {4, 1, "c"}, {5, 3, "d"}}, "2 a; 3 - <5; 4 c"},
      {{{2, 1, "a"}, {3, 2, "b", 1}, {4, 1, "c", 2}}, "2 a <4; 3 b"},
      {{{3, 3, "its own parent"}, {4, -5, "c"}}, "3 - <3; 4 c"}};
  for (const auto& [listed, text] : cases) {
    machine.kernel.processes.clear();
    for (const auto& [pid, parent, name, parentNow, gone] : listed) {
      Process& process = start(pid, parent, name);
      process.parentNow = parentNow;
      process.gone = gone;
    }
    readAfter(0);
    EXPECT_EQ(describe(info.allProcInfos()), text);
  }
}

TEST_F(ProcessesTest, AddsUpAProcessAndItsChildren) {
  start(2, 1, "parent", 2.5).figures->threads = 10;
  start(3, 2, "child", 1.5).figures->threads = 3;
  start(4, 2, "child").figures = TaskFigures{.virtualBytes = 16'777'217, .threads = 5};
  start(5, 4, "grandchild", 64).figures->residentBytes = 7;
  start(6, 2, "unreadable").figures.reset();
  start(7, 1, "old", 36'777'216.75).figures->systemNanoseconds = 750'000'000;
  readAfter(0.25);
  const auto sums = [this](std::int32_t pid) {
    const ProcessTable::Entry& sum = entry(pid);
    return std::tuple(sum.processes, sum.threads, sum.totalCPUTime, sum.virtualSize,
                      sum.residentSize, sum.runningTime);
  };
  EXPECT_EQ(sums(2), std::tuple(3, 18, 4.0, 16'777'216.0F, 0.0F, 100.25));
  // Without a name, and counted once more with the parent.
  EXPECT_EQ(sums(4), std::tuple(2, 6, 64.0, 16'777'216.0F, 7.0F, 0.0));
  EXPECT_EQ(sums(7), std::tuple(1, 1, 36'777'217.5, 0.0F, 0.0F, 100.25));
}

TEST_F(ProcessesTest, SharesSinceTheReadingBefore) {
  // The age and the CPU seconds at the first reading; CPU seconds and seconds between the two.
  const std::tuple<double, double, double, double, std::optional<float>> cases[] = {
      {100, 7, 3, 2, 1.5F},
      {100, 7, 3, 0, std::nullopt},
      {100, 7, 3, -2, -1.5F},
      // After 426 days with eight processors busy.
      {36'806'400.0, 294'451'200.0, 8, 1, 8.0F}};
  for (const auto& [age, before, used, elapsed, share] : cases) {
    start(2, 1, "a", before, age);
    readAfter(0);
    use(2, used);
    readAfter(elapsed);
    EXPECT_EQ(entry(2).CPUDynamic, share) << age << ' ' << elapsed;
  }
}

TEST_F(ProcessesTest, ComparesOnlyWhatBothReadingsHave) {
  start(2, 1, "parent", 1);
  start(3, 2, "child", 4);
  start(4, 3, "grandchild");
  start(5, 1, "replaced", 9);
  readAfter(0);
  EXPECT_EQ(entry(2).CPUDynamic, std::nullopt);

  machine.kernel.processes.at(3).gone = true;  // and now of an unknown parent
  start(5, 1, "reused", 1, 19);
  start(6, 1, "new");
  readAfter(1);
  EXPECT_EQ(entry(2).CPUDynamic, -4.0F);
  EXPECT_EQ(entry(5).CPUDynamic, 0.1F);  // 8 seconds less in 80 seconds less
  EXPECT_FALSE(entry(3).CPUDynamic || entry(6).CPUDynamic);

  machine.kernel.processes.at(3).gone = false;  // a child again, so without a running time
  machine.kernel.processes.at(5).parentNow = 6;
  readAfter(1);
  EXPECT_EQ(entry(3).CPUDynamic, -4.0F / 101.0F);
  EXPECT_EQ(entry(6).CPUDynamic, 1.0F);

  machine.kernel.processesListable = false;
  readAfter(1);
  EXPECT_TRUE(info.allProcInfos().entries().empty() && info.allProcInfos().find(6) == nullptr);
  machine.kernel.processesListable = true;
  for (const std::optional<float> share : {std::optional<float>(), std::optional(0.0F)}) {
    readAfter(1);
    EXPECT_EQ(entry(6).CPUDynamic, share);
  }
}

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

TEST(TopFive, KeepsTheHeaviestInOrder) {
  const std::pair<std::vector<float>, const char*> cases[] = {
      {{1, 2, 3, 4, 5, 6, 7}, "65432"}, {{7, 6, 5, 4, 3, 2, 1}, "01234"},
      {{0, 0, 0, 0, 0, 0, 1}, "60123"}, {{kNaN, 1, kInfinity, 3, kNaN, -1, 2}, "23615"},
      {{kNaN, 2, kNaN, 3}, "3102"},
  };
  for (const auto& [weights, expected] : cases) {
    const std::vector<ProcessTable::Entry> entries(weights.size());
    TopFive top;
    for (std::size_t i = 0; i < weights.size(); ++i) {
      top.offer(entries[i], weights[i]);
    }
    std::string places;
    for (const ProcessTable::Entry* const entry : top.entries()) {
      places += std::to_string(entry - entries.data());
    }
    EXPECT_EQ(places, expected);
  }
}

using Rows = std::vector<std::string>;

Rows texts(const std::optional<std::vector<ProcessEntry>>& rows) {
  Rows result;
  for (const ProcessEntry& row : rows.value()) {
    EXPECT_EQ(Platform::current().locale.number(row.share * 100.0F, 1),
              row.avgCpuTime.substr(0, row.avgCpuTime.find('%')));
    result.push_back(row.name + " " + row.pid + " " + row.avgCpuTime);
  }
  return result;
}

TEST_F(ProcessesTest, RanksByBothShares) {
  machine.locale = Locale(",");
  EXPECT_EQ(texts(info.getTop5CPUProccesses()), Rows{});
  start(10, 1, "too young", 0, 8);
  start(11, 1, "old enough", 0, 9);
  start(12, 1, "parent", 0, 28);
  start(13, 12, "carrier");
  start(14, 13, "helper");
  start(15, 1, "many cores", 59, 62);
  start(16, 1, "idle", 16, 62);
  start(17, 1, "past the bound", 29, 29);
  readAfter(0);
  use(10, 9);
  use(11, 0.75);
  use(13, 0.5);
  use(14, 9);
  use(15, 5);
  readAfter(2);
  EXPECT_EQ(texts(info.getTop5CPUProccesses()),
            (Rows{"many cores 15 250,0%", "old enough 11 37,5%", "parent 12 25,0%",
                  "past the bound 17 0,0%", "idle 16 0,0%"}));
  EXPECT_EQ(texts(info.getTop5CPUProccessesAvgSinceProcessStart()),
            (Rows{"many cores 15 100,0", "past the bound 17 93,5", "idle 16 25,0"}));
}

TEST_F(ProcessesTest, RanksByResidentMemory) {
  TemporaryDirectory host;
  std::filesystem::create_directory(host.path + "/fr.lproj");
  std::ofstream(host.path + "/Info.strings") << R"("identifier" = "host";)";
  std::ofstream(host.path + "/fr.lproj/Localizable.strings") << R"("GB" = "%n";)";
  machine.mainBundle = openBundle(host.path.c_str(), {"fr"});
  machine.locale = Locale(",");
  start(2, 1, "small");
  start(3, 1, "large").figures->residentBytes = 1'610'612'736;
  start(4, 3, "carrier").figures->residentBytes = 536'870'912;
  start(5, 4, "helper");
  readAfter(0);
  Rows rows;
  for (const MemoryEntry& row : info.getTop5MemoryProccesses()) {
    rows.push_back(row.name + " " + row.pid + " " + row.realSize);
  }
  EXPECT_EQ(rows, (Rows{"large 3 2,0 %n", "- 4 512 MB", "small 2 0 MB"}));
}

TEST_F(ProcessesTest, ListsWhoIsAboveTheThreshold) {
  // The float nearest to 0.3 is above it, the one nearest to 0.7 below.
  const std::tuple<float, double, Rows> cases[] = {
      {50, 0.51, {"7"}}, {50, 0.5, {}},  {30, 0.3, {"7"}},  {70, 0.7, {}},
      {0, 9, {}},        {-5, 0, {"7"}}, {kInfinity, 9, {}}};
  for (const auto& [threshold, used, listed] : cases) {
    info.setNotificationThreshold(90);
    start(7, 1, "young", 0, 0);
    readAfter(0);
    info.getCPUProccessesForNotification();
    info.setNotificationThreshold(threshold);
    use(7, used);
    readAfter(1);
    EXPECT_EQ(info.getCPUProccessesForNotification(), listed) << threshold;
  }
}

TEST_F(ProcessesTest, JudgesForAlertsOverTheTimeSinceTheLastOfThem) {
  info.setNotificationThreshold(50);
  start(7, 1, "pausing");
  start(8, 1, "replaced", 95);
  readAfter(0);
  EXPECT_EQ(info.getCPUProccessesForNotification(), Rows{});
  for (int second = 1; second <= 10; ++second) {
    use(7, second > 8 ? 0 : 1);
    readAfter(1);  // as a panel on screen has it
  }
  start(9, 1, "new", 50);
  start(8, 1, "another", 100, 105);
  readAfter(0);
  EXPECT_EQ(info.getCPUProccessesForNotification(), Rows{"7"});
  readAfter(10);
  EXPECT_EQ(info.getCPUProccessesForNotification(), Rows{});
}

TEST_F(ProcessesTest, KeepsItsStorageWhileProcessesComeAndGo) {
  constexpr std::int32_t kProcesses = 300;
  constexpr std::int32_t kStride = 4096;  // pids that a poor hash would put into one place
  constexpr std::int32_t kEnding = 7;     // processes that end before each reading
  std::int32_t next = 1;
  for (std::int32_t oldest = 1, reading = 0; reading < 200; ++reading, oldest += kEnding) {
    machine.kernel.processes.erase(machine.kernel.processes.begin(),
                                   machine.kernel.processes.lower_bound(oldest * kStride));
    for (; next < oldest + kProcesses; ++next) {
      start(next * kStride, next % 3 == 0 ? (next - 1) * kStride : 1, "process");
    }
    machine.clock.sleep(1);
    allocations = 0;
    info.getAllProcessInfos();
    EXPECT_TRUE(reading == 0 ? allocations > 0 : allocations == 0 || reading < 10) << reading;
    for (std::int32_t i = oldest; i < next; ++i) {
      const bool isNew = reading == 0 || i >= next - kEnding;
      const ProcessTable::Entry* const found = info.allProcInfos().find(i * kStride);
      ASSERT_TRUE(i % 3 == 0 ? found == nullptr : found && found->CPUDynamic.has_value() != isNew);
    }
  }
}

}  // namespace
}  // namespace vel::test
