// The processes of captured machines, and of the one that runs the test.
#include "platform/linux/ProcessReader.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/ioctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <ctime>
#include <filesystem>
#include <iterator>
#include <map>
#include <string>
#include <thread>
#include <tuple>
#include <utility>
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

TEST(CapturedProcesses, AreReportedByApplication) {
  const MachineTree tree;
  tree.write("proc/stat", "btime 1000\n");
  const Captured processes[] = {
      {.pid = 1, .parent = 0, .unit = "init.scope"},
      {.pid = 2, .parent = 0, .flags = kKernelThread},
      {.pid = 3, .parent = 2, .unit = "odd.service", .flags = kKernelThread},
      {.pid = 10, .parent = 1, .unit = "user@1000.service/init.scope"},
      {.pid = 11, .parent = 10, .unit = "user@1000.service/session.slice/shell.service"},
      {.pid = 13,
       .parent = 11,
       .unit = "user@1000.service/app.slice/app-x-1.scope",
       .name = "bash"},
      {.pid = 14, .parent = 13, .unit = "user@1000.service/app.slice/app-x-1.scope"},
      {.pid = 15, .parent = 14},
      {.pid = 17, .parent = 99, .unit = "y.service"}};
  for (const Captured& each : processes) {
    write(tree, each);
  }
  // What the directory has beside processes, and those that end before they have been read.
  tree.write("proc/010/stat", "");
  tree.write("proc/77/stat", "");
  tree.write("proc/78/cgroup", "");
  tree.write("proc/79/stat", "80 (x) S 1 1 1 0 -1 0 0 0 0 0 25 5 0 0 20 0 4 0 0 8192 2 0\n");
  const Parents expected = {{1, 0},  {2, 0},   {3, 0},   {10, 1}, {11, 1},
                            {13, 1}, {14, 13}, {15, 13}, {17, 0}};
  LinuxKernel kernel(tree.proc(), tree.sys());
  std::vector<ProcessRecord> records;
  for (int reading = 0; reading < 2; ++reading) {
    EXPECT_TRUE(kernel.listProcesses(records));
    EXPECT_EQ(parentsOf(records), expected);
  }
  const std::vector<ApplicationProcess> application = kernel.application(13);
  ASSERT_EQ(application.size(), 3U);
  EXPECT_EQ(std::tuple(application[0].pid, application[1].pid, application[2].pid),
            std::tuple(13, 14, 15));
  // It has no command line any more once it has ended.
  for (const auto& arguments : {std::string("bash\0/opt/backup.sh\0", 20), std::string()}) {
    tree.write("proc/13/cmdline", arguments);
    EXPECT_EQ(kernel.processName(13), "backup.sh");
  }
  EXPECT_TRUE(kernel.application(14).empty() && kernel.application(99).empty());
  // Of one that is not in the list the kernel's parent is told.
  LinuxKernel another(tree.proc(), tree.sys());
  for (const Captured& each : processes) {
    EXPECT_EQ(another.process(each.pid).value_or(ProcessRecord{}).parent, each.parent);
    EXPECT_EQ(another.taskFigures(each.pid).value_or(TaskFigures{}).threads, 4);
  }
  for (const int pid : {-1, 0, 77, 78, 79, 80}) {
    EXPECT_FALSE(another.process(pid) || another.taskFigures(pid) || another.processName(pid));
  }
}

TEST(CapturedProcesses, AUnitIsLookedAtOnceAProcessIsASecondOldAndFollowedFromThenOn) {
  const MachineTree tree;
  ProcessDirectory directory(tree.proc());
  const auto ticks = static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
  write(tree, {.pid = 10, .parent = 1, .unit = "a.service"});
  write(tree, {.pid = 20, .parent = 1, .unit = "c.service"});
  write(tree, {.pid = 11, .parent = 10, .unit = "b.service", .start = 500});
  write(tree, {.pid = 12, .parent = 11, .unit = "b.service", .start = 500});
  write(tree, {.pid = 1, .parent = 0, .unit = "init.scope"});
  ProcessReader reader(directory);
  std::vector<ProcessRecord> records;
  const auto parentsAt = [&](std::uint64_t now) {
    EXPECT_TRUE(reader.read({.bootSeconds = 0, .ticksSinceBoot = now}));
    reader.copyTo(records);
    const Parents parents = parentsOf(records);
    return std::pair(parents.at(11), parents.at(12));
  };
  EXPECT_EQ(parentsAt(500 + ticks - 1), std::pair(10, 10));
  EXPECT_EQ(parentsAt(500 + ticks), std::pair(1, 11));
  write(tree, {.pid = 12, .parent = 11, .unit = "c.service", .start = 500});
  for (std::uint32_t reading = 1; reading < ProcessReader::kRotation; ++reading) {
    parentsAt(500 + ticks);
  }
  EXPECT_EQ(parentsAt(500 + ticks), std::pair(1, 20));
}

TEST(CapturedProcesses, AProcessIsToldFromTheNextOneOfItsPid) {
  const MachineTree tree;
  LinuxKernel kernel(tree.proc(), tree.sys());
  std::vector<ProcessRecord> records;
  EXPECT_FALSE(kernel.listProcesses(records));
  const auto hertz = static_cast<int>(::sysconf(_SC_CLK_TCK));
  const std::tuple<const char*, Captured, std::int64_t, const char*> steps[] = {
      {"1000", {.pid = 9, .parent = 1, .start = 5 * hertz - 1, .name = "long"}, 1004, "long"},
      // Somebody has set the clock, and the process has changed its name.
      {"7000", {.pid = 9, .parent = 1, .start = 5 * hertz - 1, .name = "y\n)"}, 1004, "y\n)"},
      {"7000", {.pid = 9, .parent = 1, .start = 5 * hertz - 1, .name = ""}, 1004, "?"},
      {"7000",
       {9, 1, {}, 6 * hertz, "kworker/u16:3-events", kKernelThread},
       1006,
       "kworker/u16:3"}};
  for (const auto& [btime, process, startSeconds, name] : steps) {
    tree.write("proc/stat", "btime " + std::string(btime) + '\n');
    write(tree, process);
    TickSample ignored;
    kernel.readTicks(ignored);
    ASSERT_TRUE(kernel.listProcesses(records));
    if (startSeconds == 1006) {
      EXPECT_TRUE(records.empty());  // lest it is taken for the one before
      ASSERT_TRUE(kernel.listProcesses(records));
    }
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
  EXPECT_EQ(first.name(), "first");
  // Of the same application as its parent, whose that is.
  const std::int32_t own = list(::getpid()).parent;
  EXPECT_EQ(first.parent, own > 1 ? own : ::getpid());
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
  EXPECT_EQ(list(own).pid, own);
  const std::uint64_t shown = cpuTime(own);  // and what children have used that have ended
  const std::uint64_t before = ownCpuTime();
  useProcessor();
  EXPECT_EQ(list(own).pid, own);
  EXPECT_GE(cpuTime(own) - shown, 60'000'000U);
  EXPECT_LE(cpuTime(own) - shown, ownCpuTime() - before + 60'000'000U);
}

// --- A job with everything that makes its processes hard to follow ---

struct Told {
  pid_t job = 0;
  pid_t orphan = 0;               ///< forked twice, still in the job's session
  pid_t detached = 0;             ///< forked twice, and in a session of its own
  pid_t threaded = 0;             ///< its first thread has ended
  std::int64_t microseconds = 0;  ///< what the job and its children have used that have ended
};

void sleepForGood() {
  ::alarm(120);  // lest it outlives a test that has been ended
  for (;;) {
    ::pause();
  }
}

template <typename Body>
pid_t forked(Body body) {
  const pid_t pid = ::fork();
  if (pid == 0) {
    body();
    ::_exit(0);
  }
  return pid;
}

/// The pid of a process whose parent has ended.
template <typename Body>
pid_t forkedTwice(Body body) {
  int ends[2] = {};
  EXPECT_EQ(::pipe(ends), 0);
  const pid_t between = forked([&] {
    const pid_t pid = forked(body);
    (void)!::write(ends[1], &pid, sizeof pid);
  });
  ::waitpid(between, nullptr, 0);
  pid_t pid = 0;
  EXPECT_EQ(::read(ends[0], &pid, sizeof pid), ssize_t{sizeof pid});
  return pid;
}

std::int64_t usedMicroseconds() {
  std::int64_t sum = 0;
  for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage = {};
    ::getrusage(who, &usage);
    for (const timeval& time : {usage.ru_utime, usage.ru_stime}) {
      sum += time.tv_sec * 1'000'000 + time.tv_usec;
    }
  }
  return sum;
}

void runJob(int go, int told) {
  Told all;
  all.job = ::getpid();
  (void)!::write(told, &all, sizeof all);
  char start = 0;
  (void)!::read(go, &start, 1);
  for (int i = 0; i < 300; ++i) {
    ::waitpid(forked([] {
                for (std::atomic<int> turn = 0; turn < 100'000; ++turn) {
                }
              }),
              nullptr, 0);
  }
  all.orphan = forkedTwice(sleepForGood);
  all.detached = forkedTwice([] {
    ::setsid();
    sleepForGood();
  });
  all.threaded = forked([] {
    std::thread(sleepForGood).detach();
    ::syscall(SYS_exit, 0);  // of the thread alone
  });
  all.microseconds = usedMicroseconds();
  (void)!::write(told, &all, sizeof all);
  sleepForGood();
}

void becomeAShell() {
  const int terminal = ::posix_openpt(O_RDWR | O_NOCTTY);
  EXPECT_EQ(::grantpt(terminal) | ::unlockpt(terminal), 0);
  ::setsid();
  EXPECT_EQ(::ioctl(::open(::ptsname(terminal), O_RDWR), TIOCSCTTY, 0), 0);
  ::signal(SIGTSTP, SIG_IGN);
  ::signal(SIGTTOU, SIG_IGN);
}

TEST_F(LiveProcesses, OfAJobAreOneRowUnlessTheyDetach) {
  ASSERT_EQ(::prctl(PR_SET_CHILD_SUBREAPER, 1), 0);  // whose row is not theirs
  int go[2] = {};
  int told[2] = {};
  ASSERT_TRUE(::pipe(go) == 0 && ::pipe(told) == 0);
  Child shell(becomeAShell, [&] {
    forked([&] {
      ::setpgid(0, 0);
      ::signal(SIGTSTP, SIG_DFL);
      ::signal(SIGTTOU, SIG_DFL);
      runJob(go[0], told[1]);
    });
  });
  shell.next();
  Told all;
  ASSERT_EQ(::read(told[0], &all, sizeof all), ssize_t{sizeof all});
  const auto total = [&] {
    std::uint64_t sum = 0;
    for (const ApplicationProcess& process : kernel_.application(all.job)) {
      sum += cpuTime(process.pid);
    }
    return static_cast<double>(sum) / 1e6;  // milliseconds
  };
  const double before = total();
  ASSERT_EQ(::write(go[1], "", 1), 1);
  ASSERT_EQ(::read(told[0], &all, sizeof all), ssize_t{sizeof all});
  EXPECT_NEAR(total() - before, static_cast<double>(all.microseconds) / 1e3, 40);  // some ticks
  EXPECT_GT(all.microseconds, 50'000);
  const auto rowOf = [&](pid_t pid) {
    const std::int32_t parent = list(pid).parent;
    return parent > 1 ? parent : pid;
  };
  EXPECT_EQ(rowOf(shell.pid()), shell.pid());
  EXPECT_EQ(rowOf(all.orphan), all.job);
  EXPECT_EQ(rowOf(all.threaded), all.job);
  while (::getsid(all.detached) != all.detached) {
    std::this_thread::yield();  // it has been started, and may not have come so far
  }
  EXPECT_NE(rowOf(all.detached), all.job);

  // The shell and the job's first process end: what is left is no job any more.
  ::kill(all.job, SIGKILL);
  shell.kill();
  shell.reap();
  while (list(all.job).pid != 0) {
    ::waitpid(all.job, nullptr, 0);
  }
  EXPECT_EQ(rowOf(all.orphan), all.orphan);
  for (const pid_t pid : {all.orphan, all.detached, all.threaded}) {
    ::kill(pid, SIGKILL);
    ::waitpid(pid, nullptr, 0);
  }
  ::prctl(PR_SET_CHILD_SUBREAPER, 0);
}

}  // namespace
}  // namespace vel::test
