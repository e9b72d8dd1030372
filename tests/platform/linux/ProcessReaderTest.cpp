// The processes of captured machines, and of the one that runs the test.
#include "platform/linux/ProcessReader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <map>
#include <string>
#include <tuple>
#include <vector>

#include "platform/linux/LinuxKernel.h"
#include "support/Child.h"
#include "support/MachineTree.h"

namespace vel::test {
namespace {

namespace fs = std::filesystem;

struct Captured {
  int pid;
  int parent;
  std::string unit = {};  ///< none if empty
  int start = 0;          ///< in clock ticks
  std::string name = "x";
  unsigned flags = 0;
};

constexpr unsigned kKernelThread = 0x0020'0000;

void write(const MachineTree& tree, const Captured& process) {
  const fs::path directory = "proc/" + std::to_string(process.pid);
  tree.write(directory / "stat", std::to_string(process.pid) + " (" + process.name + ") S " +
                                     std::to_string(process.parent) + " 1 1 0 -1 " +
                                     std::to_string(process.flags) +
                                     " 0 0 0 0 250 50 0 0 20 0 4 0 " +
                                     std::to_string(process.start) + " 8192 2 1844 0\n");
  tree.write(directory / "cgroup",
             "0::/" + (process.unit.empty() ? "" : "user.slice/" + process.unit) + '\n');
}

using Parents = std::map<std::int32_t, std::int32_t>;

Parents parentsOf(const std::vector<ProcessRecord>& records) {
  Parents parents;
  for (const ProcessRecord& record : records) {
    EXPECT_TRUE(parents.emplace(record.pid, record.parent).second) << record.pid;
  }
  return parents;
}

TEST(CapturedProcesses, AProcessInAnotherUnitThanItsParentCountsAsLaunchedByTheFirst) {
  const MachineTree tree;
  tree.write("proc/stat", "btime 1000\n");
  const Captured processes[] = {
      {.pid = 1, .parent = 0, .unit = "init.scope"},
      {.pid = 2, .parent = 0, .flags = kKernelThread},
      {.pid = 3, .parent = 2, .unit = "odd.service", .flags = kKernelThread},
      {.pid = 4, .parent = 10, .unit = "odd.service", .flags = kKernelThread},
      {.pid = 10, .parent = 1, .unit = "user@1000.service/init.scope"},
      {.pid = 11, .parent = 10, .unit = "user@1000.service/session.slice/shell.service"},
      {.pid = 13, .parent = 11, .unit = "user@1000.service/app.slice/app-x-1.scope"},
      {.pid = 14, .parent = 13, .unit = "user@1000.service/app.slice/app-x-1.scope"},
      {.pid = 15, .parent = 13},
      {.pid = 16, .parent = 15, .unit = "y.service"},
      {.pid = 17, .parent = 99, .unit = "y.service"}};
  for (const Captured& each : processes) {
    write(tree, each);
  }
  // What the directory has beside processes, and those that end before they have been read.
  tree.write("proc/010/stat", "");
  tree.write("proc/77/stat", "");
  tree.write("proc/78/cgroup", "");
  tree.write("proc/79/stat", "80 (x) S 1 1 1 0 -1 0 0 0 0 0 25 5 0 0 20 0 4 0 0 8192 2 0\n");
  const Parents expected = {{1, 0},  {2, 0},   {3, 2},   {4, 10},  {10, 1}, {11, 1},
                            {13, 1}, {14, 13}, {15, 13}, {16, 15}, {17, 99}};
  LinuxKernel kernel(tree.proc(), tree.sys());
  std::vector<ProcessRecord> records;
  for (int reading = 0; reading < 2; ++reading) {
    EXPECT_TRUE(kernel.listProcesses(records));
    EXPECT_EQ(parentsOf(records), expected);
  }
  // Of one that is not in the list it is told the same.
  LinuxKernel another(tree.proc(), tree.sys());
  for (const auto& [pid, parent] : expected) {
    EXPECT_EQ(another.process(pid).value_or(ProcessRecord{}).parent, parent) << pid;
    EXPECT_EQ(another.taskFigures(pid).value_or(TaskFigures{}).threads, 4) << pid;
  }
  for (const int pid : {-1, 0, 77, 78, 79, 80}) {
    EXPECT_FALSE(another.process(pid) || another.taskFigures(pid)) << pid;
  }
}

TEST(CapturedProcesses, AUnitIsLookedAtOnceAProcessIsASecondOldAndFollowedFromThenOn) {
  const MachineTree tree;
  ProcessDirectory directory(tree.proc());
  const auto ticks = static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
  write(tree, {.pid = 10, .parent = 1, .unit = "a.service"});
  write(tree, {.pid = 11, .parent = 10, .unit = "b.service", .start = 500});
  ProcessReader reader(directory);
  std::vector<ProcessRecord> records;
  const auto parentAt = [&](std::uint64_t now) {
    EXPECT_TRUE(reader.read({.bootSeconds = 0, .ticksSinceBoot = now}));
    reader.copyTo(records);
    return parentsOf(records).at(11);
  };
  EXPECT_EQ(parentAt(500 + ticks - 1), 10);
  EXPECT_EQ(parentAt(500 + ticks), 1);
  write(tree, {.pid = 11, .parent = 10, .unit = "a.service", .start = 500});
  for (std::uint32_t reading = 1; reading < ProcessReader::kRotation; ++reading) {
    parentAt(500 + ticks);
  }
  EXPECT_EQ(parentAt(500 + ticks), 10);
}

TEST(CapturedProcesses, AProcessIsToldFromTheNextOneOfItsPid) {
  const MachineTree tree;
  LinuxKernel kernel(tree.proc(), tree.sys());
  std::vector<ProcessRecord> records;
  EXPECT_FALSE(kernel.listProcesses(records));
  const auto hertz = static_cast<int>(::sysconf(_SC_CLK_TCK));
  const std::tuple<const char*, Captured, std::int64_t, const char*> steps[] = {
      {"1000", {.pid = 9, .parent = 1, .start = 5 * hertz - 1, .name = "long"}, 1004, "long"},
      // The kernel rounds its start otherwise, and the process has changed its name.
      {"1001", {.pid = 9, .parent = 1, .start = 5 * hertz - 1, .name = "y\n)"}, 1004, "y\n)"},
      // Somebody has set the clock.
      {"7000", {.pid = 9, .parent = 1, .start = 5 * hertz - 1, .name = "y\n)"}, 7004, "y\n)"},
      {"7000", {9, 1, {}, 6 * hertz, "kworker/u16:3-events"}, 7006, "kworker/u16:3-ev"}};
  for (const auto& [btime, process, startSeconds, name] : steps) {
    tree.write("proc/stat", "btime " + std::string(btime) + '\n');
    write(tree, process);
    TickSample ignored;
    kernel.readTicks(ignored);
    ASSERT_TRUE(kernel.listProcesses(records));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(std::tuple(records[0].startSeconds, records[0].name(), records[0].status),
              std::tuple(startSeconds, name, 'S'));
  }
  const TaskFigures figures = kernel.taskFigures(9).value_or(TaskFigures{});
  const std::uint64_t tick = 1'000'000'000U / static_cast<unsigned>(hertz);
  EXPECT_EQ(std::tuple(figures.userNanoseconds, figures.systemNanoseconds, figures.virtualBytes,
                       figures.residentBytes),
            std::tuple(250 * tick, 50 * tick, 8192U, 2 * ::sysconf(_SC_PAGESIZE)));
  fs::create_symlink("/usr/bin/a b (deleted)", tree.proc() / "9/exe");
  EXPECT_EQ(kernel.executablePath(9), "/usr/bin/a b");
  // An answer is of the latest list as long as there is no newer one.
  fs::remove_all(tree.proc() / "9");
  EXPECT_TRUE(kernel.process(9) && kernel.taskFigures(9));
  EXPECT_TRUE(kernel.listProcesses(records) && records.empty());
  EXPECT_FALSE(kernel.process(9) || kernel.taskFigures(9));
  EXPECT_FALSE(kernel.sharesPids());
  fs::rename(tree.proc(), tree.absolute("another"));
  EXPECT_FALSE(kernel.listProcesses(records));
}

std::uint64_t ownCpuTime() {
  timespec time = {};
  ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000U +
         static_cast<std::uint64_t>(time.tv_nsec);
}

void useProcessor() {
  const std::uint64_t until = ownCpuTime() + 60'000'000;
  while (ownCpuTime() < until) {
  }
}

class LiveProcesses : public testing::Test {
 protected:
  /// What the next reading lists of the process; a pid of 0 for nothing.
  ProcessRecord list(int pid) {
    EXPECT_TRUE(kernel_.listProcesses(records_));
    for (const ProcessRecord& record : records_) {
      if (record.pid == pid) {
        return record;
      }
    }
    return {};
  }

  std::uint64_t cpuTime(int pid) {
    const TaskFigures figures = kernel_.taskFigures(pid).value_or(TaskFigures{});
    return figures.userNanoseconds + figures.systemNanoseconds;
  }

  LinuxKernel kernel_;
  std::vector<ProcessRecord> records_;
};

bool isStatOpen(int pid) {
  const std::string stat = '/' + std::to_string(pid) + "/stat";
  std::error_code gone;  // the listing's own descriptor
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc/self/fd")) {
    if (fs::read_symlink(entry.path(), gone).string().find(stat) != std::string::npos) {
      return true;
    }
  }
  return false;
}

TEST_F(LiveProcesses, SeesWhatAChildDoes) {
  constexpr const char* kHostile = ")\n\x1b[31m (";
  Child child([] { ::prctl(PR_SET_NAME, "first"); }, [] { ::prctl(PR_SET_NAME, kHostile); },
              useProcessor);
  const int pid = child.pid();
  const ProcessRecord first = list(pid);
  EXPECT_EQ(std::tuple(first.name(), first.parent), std::tuple("first", ::getpid()));
  EXPECT_NEAR(static_cast<double>(first.startSeconds), static_cast<double>(::time(nullptr)), 60);
  child.next();
  EXPECT_EQ(list(pid).name(), kHostile);
  const std::uint64_t before = cpuTime(pid);
  child.next();
  EXPECT_EQ(list(pid).status, 'T');
  const std::uint64_t after = cpuTime(pid);
  EXPECT_GE(after, before + 60'000'000 - 10'000'000);  // a tick may be missing
  EXPECT_TRUE(isStatOpen(pid));
  child.kill();
  const ProcessRecord last = list(pid);
  EXPECT_EQ(std::tuple(last.status, last.startSeconds), std::tuple('Z', first.startSeconds));
  EXPECT_GE(cpuTime(pid), after);
  child.reap();
  EXPECT_EQ(list(pid).pid, 0);
  EXPECT_FALSE(isStatOpen(pid));
  EXPECT_FALSE(kernel_.process(pid) || kernel_.taskFigures(pid) || kernel_.executablePath(pid));
}

TEST_F(LiveProcesses, KnowsItself) {
  const int own = kernel_.ownPid();
  EXPECT_EQ(own, ::getpid());
  EXPECT_TRUE(kernel_.sharesPids());
  EXPECT_EQ(kernel_.executablePath(own), fs::read_symlink("/proc/self/exe"));
  const std::uint64_t before = ownCpuTime();
  EXPECT_EQ(list(own).pid, own);
  EXPECT_GE(cpuTime(own), before);
  EXPECT_LE(cpuTime(own), ownCpuTime());
}

void forkASleeper() {
  if (::fork() == 0) {
    ::alarm(120);  // lest it outlives a test that has been ended
    for (;;) {
      ::pause();
    }
  }
}

/// The new parent comes without the process having run.
TEST_F(LiveProcesses, FollowsAnOrphanToItsNewParent) {
  ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
  for (const bool isReaped : {false, true}) {
    SCOPED_TRACE(isReaped);
    Child child(forkASleeper);
    list(child.pid());
    const auto orphan = std::find_if(records_.begin(), records_.end(),
                                     [&](const auto& each) { return each.parent == child.pid(); });
    ASSERT_NE(orphan, records_.end());
    const int pid = orphan->pid;
    while (list(pid).status != 'S') {
    }
    child.kill();
    if (isReaped) {
      child.reap();
    }
    EXPECT_EQ(list(pid).parent, ::getpid());
    ::kill(pid, SIGKILL);
    EXPECT_EQ(::waitpid(pid, nullptr, 0), pid);
  }
  ::prctl(PR_SET_CHILD_SUBREAPER, 0);
}

}  // namespace
}  // namespace vel::test
