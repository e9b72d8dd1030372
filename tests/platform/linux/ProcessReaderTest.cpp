// The processes of captured machines, and of the one that runs the test.
#include "platform/linux/ProcessReader.h"

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <latch>
#include <map>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "platform/linux/LinuxKernel.h"
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

constexpr const char* kStat = "proc/stat";

TEST(CapturedProcesses, AProcessInAnotherUnitThanItsParentCountsAsLaunchedByTheFirst) {
  const MachineTree tree;
  tree.write(kStat, "btime 1000\n");
  const Captured processes[] = {
      {.pid = 1, .parent = 0, .unit = "init.scope"},
      {.pid = 2, .parent = 0, .flags = kKernelThread},
      {.pid = 3, .parent = 2, .unit = "odd.service", .flags = kKernelThread},
      {.pid = 4, .parent = 10, .unit = "odd.service", .flags = kKernelThread},
      {.pid = 10, .parent = 1, .unit = "user@1000.service/init.scope"},
      {.pid = 11, .parent = 10, .unit = "user@1000.service/session.slice/shell.service"},
      {.pid = 12, .parent = 11, .unit = "user@1000.service/session.slice/shell.service/sub"},
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
  const Parents expected = {{1, 0},   {2, 0},  {3, 2},   {4, 10},  {10, 1},  {11, 1},
                            {12, 11}, {13, 1}, {14, 13}, {15, 13}, {16, 15}, {17, 99}};
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
    tree.write(kStat, "btime " + std::string(btime) + '\n');
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

/// A child process that does one thing after another and stops after each; it is killed, and waited
/// for, with its owner.
class Child {
 public:
  template <typename... Steps>
  explicit Child(Steps... steps) : pid_(::fork()) {
    if (pid_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      (..., (steps(), ::raise(SIGSTOP)));
      ::_exit(0);
    }
    waitUntil(WSTOPPED);
  }
  ~Child() { end(); }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  /// The first step has been done before the constructor returns; this has the next one done.
  void next() const {
    ::kill(pid_, SIGCONT);
    waitUntil(WSTOPPED);
  }

  /// Leaves a zombie.
  void kill() const {
    ::kill(pid_, SIGKILL);
    waitUntil(WEXITED | WNOWAIT);
  }

  void end() {
    if (!hasEnded_) {
      ::kill(pid_, SIGKILL);
      EXPECT_EQ(::waitpid(pid_, nullptr, 0), pid_);
      hasEnded_ = true;
    }
  }

  [[nodiscard]] int pid() const { return pid_; }

 private:
  void waitUntil(int what) const {
    siginfo_t info = {};
    EXPECT_EQ(::waitid(P_PID, static_cast<id_t>(pid_), &info, what), 0);
  }

  pid_t pid_;
  bool hasEnded_ = false;
};

void doNothing() {}

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
  child.kill();
  const ProcessRecord last = list(pid);
  EXPECT_EQ(std::tuple(last.status, last.startSeconds), std::tuple('Z', first.startSeconds));
  EXPECT_GE(cpuTime(pid), after);
  child.end();
  EXPECT_EQ(list(pid).pid, 0);
  EXPECT_FALSE(kernel_.process(pid) || kernel_.taskFigures(pid) || kernel_.executablePath(pid));
}

TEST_F(LiveProcesses, KnowsItself) {
  const int own = kernel_.ownPid();
  EXPECT_EQ(own, ::getpid());
  EXPECT_TRUE(kernel_.sharesPids());
  EXPECT_EQ(kernel_.executablePath(own), fs::read_symlink("/proc/self/exe"));
  std::latch end(1);
  std::thread thread([&end] { end.wait(); });
  // Long enough for its file to be kept open.
  for (int reading = 0; reading < 4; ++reading) {
    const std::uint64_t before = ownCpuTime();
    EXPECT_EQ(list(own).pid, own);
    EXPECT_GE(cpuTime(own), before);
    EXPECT_LE(cpuTime(own), ownCpuTime());
    const TaskFigures figures = kernel_.taskFigures(own).value_or(TaskFigures{});
    EXPECT_EQ(figures.threads, std::distance(fs::directory_iterator("/proc/self/task"), {}));
    EXPECT_GE(figures.virtualBytes, figures.residentBytes);
    EXPECT_GE(figures.residentBytes, 100'000U);
  }
  end.count_down();
  thread.join();
}

void forkASleeper() {
  if (::fork() == 0) {
    ::alarm(120);  // lest it outlives a test that has been ended
    for (;;) {
      ::pause();
    }
  }
}

/// The first thread ends, which has the process listed as a zombie, and another goes on.
void leaveItToAThread() {
  forkASleeper();
  std::thread([] {
    for (std::string stat; stat.find(") Z ") == std::string::npos;) {
      std::getline(std::ifstream("/proc/self/stat"), stat);
    }
    ::raise(SIGSTOP);
  }).detach();
  ::syscall(SYS_exit, 0);
}

/// The new parent comes without the process having run.
TEST_F(LiveProcesses, FollowsAnOrphanToItsNewParent) {
  ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);
  struct Case {
    void (*step)();
    char status;
    bool isReaped;
  };
  for (const auto& [step, status, isReaped] : {Case{forkASleeper, 'T', false},
                                               {forkASleeper, 'T', true},
                                               {leaveItToAThread, 'Z', false}}) {
    SCOPED_TRACE(testing::Message() << status << isReaped);
    Child child(step);
    while (list(child.pid()).status != status) {
    }
    const auto orphan = std::find_if(records_.begin(), records_.end(),
                                     [&](const auto& each) { return each.parent == child.pid(); });
    ASSERT_NE(orphan, records_.end());
    const int pid = orphan->pid;
    while (list(pid).status != 'S') {
    }
    child.kill();
    if (isReaped) {
      child.end();
    }
    EXPECT_EQ(list(pid).parent, ::getpid());
    ::kill(pid, SIGKILL);
    EXPECT_EQ(::waitpid(pid, nullptr, 0), pid);
  }
  ::prctl(PR_SET_CHILD_SUBREAPER, 0);
}

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

TEST_F(LiveProcesses, FilesStayOpenWhileAProcessRunsAndAreClosedOnceItSleepsOrEnds) {
  for (const bool ends : {false, true}) {
    SCOPED_TRACE(ends);
    Child child(doNothing, useProcessor, useProcessor);
    const int pid = child.pid();
    list(pid);
    for (const bool isOpen : {false, true}) {
      EXPECT_FALSE(isStatOpen(pid));
      child.next();
      EXPECT_EQ(list(pid).pid, pid);
      EXPECT_EQ(isStatOpen(pid), isOpen);
    }
    if (ends) {
      child.end();
    }
    list(pid);
    // It may take a moment to stop.
    for (int reading = 0; !ends && isStatOpen(pid) && reading < 10'000; ++reading) {
      list(pid);
    }
    EXPECT_FALSE(isStatOpen(pid));
  }
}

TEST_F(LiveProcesses, AreReadWhenTheFilesThatAreKeptOpenUseUpTheDescriptors) {
  const int own = ::getpid();
  for (int reading = 0; reading < 4; ++reading) {
    EXPECT_EQ(list(own).pid, own);
  }
  EXPECT_TRUE(isStatOpen(own));  // it has run each time
  const Child child(doNothing);
  rlimit limit = {};
  ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
  const rlimit low = {.rlim_cur = 64, .rlim_max = limit.rlim_max};
  ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &low), 0);
  std::vector<int> taken;
  for (int file = ::dup(STDERR_FILENO); file >= 0; file = ::dup(STDERR_FILENO)) {
    taken.push_back(file);
  }
  for (int reading = 0; reading < 4; ++reading) {
    EXPECT_TRUE(list(child.pid()).pid == child.pid() && list(own).pid == own);
  }
  std::for_each(taken.begin(), taken.end(), ::close);
  EXPECT_FALSE(isStatOpen(own));
  EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
}

}  // namespace
}  // namespace vel::test
