// The CPU time of ended processes: no row's total goes down or jumps, and nothing is lost.
#include "platform/linux/EndedTime.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/linux/ProcessReader.h"
#include "support/MachineTree.h"

namespace vel::test {
namespace {

const std::uint64_t kTick = 1'000'000'000U / static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));

/// Processes that start, work, end and wait as the kernel has them do, all in ticks, and a reader
/// of theirs. The first process is init; an interactive shell is its child.
class WorkingMachine {
 public:
  static constexpr int kShell = 10;

  WorkingMachine() {
    add(1, 0, 1);
    add(kShell, 1, kShell);
  }

  void add(int pid, int parent, int group) {
    processes_[pid] = {.parent = parent, .group = group, .start = now_};
  }
  void fork(int parent, int pid) { add(pid, parent, parent == kShell ? pid : of(parent).group); }
  void work(int pid, std::uint64_t ticks) {
    of(pid).own += ticks;
    used += ticks;
  }
  /// Its children are given to the first process.
  void exit(int pid) {
    of(pid).isZombie = true;
    for (auto& [each, process] : processes_) {
      if (process.parent == pid) {
        process.parent = 1;
      }
    }
  }
  void wait(int pid) {
    const Process ended = of(pid);
    of(ended.parent).children += ended.own + ended.children;
    remove(pid);
  }
  void remove(int pid) {
    std::filesystem::remove_all(tree_.proc() / std::to_string(pid));
    processes_.erase(pid);
  }
  void pass(std::uint64_t ticks) { now_ += ticks; }

  struct Process {
    int parent = 0;
    int group = 0;
    std::uint64_t start = 0;
    std::uint64_t own = 0;
    std::uint64_t children = 0;
    bool isZombie = false;
  };
  Process& of(int pid) { return processes_.at(pid); }
  [[nodiscard]] const std::map<int, Process>& all() const { return processes_; }

  /// The rows' totals in ticks.
  std::map<int, std::uint64_t> read() {
    for (const auto& [pid, process] : processes_) {
      write(pid, process);
    }
    EXPECT_TRUE(reader_.read({.bootSeconds = 0, .ticksSinceBoot = now_}));
    reader_.copyTo(records_);
    std::map<int, std::uint64_t> totals;
    for (const ProcessRecord& record : records_) {
      const TaskFigures figures = reader_.figures(record.pid).value_or(TaskFigures{});
      const std::uint64_t time = figures.userNanoseconds + figures.systemNanoseconds;
      EXPECT_EQ(time % kTick, 0U);
      totals[record.parent > 1 ? record.parent : record.pid] += time / kTick;
    }
    return totals;
  }

  std::uint32_t recentMicroseconds(int leader) {
    return reader_.application(leader).at(0).recentMicroseconds;
  }

  std::uint64_t used = 0;

 private:
  void write(int pid, const Process& process) const {
    const std::string number = std::to_string(pid);
    // The signals that an interactive shell ignores: SIGTSTP and SIGTTOU.
    const char* const signals = pid == kShell ? "2621440" : "0";
    tree_.write("proc/" + number + "/stat",
                number + " (x) " + (process.isZombie ? "Z " : "S ") +
                    std::to_string(process.parent) + ' ' + std::to_string(process.group) +
                    " 10 5 -1 0 0 0 0 0 " + std::to_string(process.own) + " 0 " +
                    std::to_string(process.children) + " 0 20 0 1 0 " +
                    std::to_string(process.start) + " 0 0 0 0 0 0 0 0 0 0 " + signals + " 0 0\n");
  }

  MachineTree tree_;
  ProcessDirectory directory_{(std::filesystem::create_directories(tree_.proc()), tree_.proc())};
  ProcessReader reader_{directory_};
  std::map<int, Process> processes_;
  std::vector<ProcessRecord> records_;
  std::uint64_t now_ = 1000;
};

TEST(EndedTime, OfABuildIsAllInItsRow) {
  WorkingMachine machine;
  machine.fork(WorkingMachine::kShell, 20);
  machine.of(20).children = 500;                       // before anybody looked
  machine.of(WorkingMachine::kShell).children = 9000;  // jobs of their own
  std::map<int, std::uint64_t> before = machine.read();
  EXPECT_EQ(before, (std::map<int, std::uint64_t>{{1, 0}, {10, 0}, {20, 500}}));

  // One that no reading sees, one that two see, and one whose parent ends as well.
  machine.pass(100);
  machine.fork(20, 21);
  machine.work(21, 7);
  machine.exit(21);
  machine.wait(21);
  machine.fork(20, 22);
  machine.fork(22, 23);
  machine.work(23, 4);
  EXPECT_EQ(machine.read()[20], 511U);
  machine.pass(100);
  machine.work(23, 5);
  machine.exit(23);
  machine.wait(23);
  machine.work(22, 1);
  const std::uint32_t recent = machine.recentMicroseconds(20);
  EXPECT_EQ(machine.read()[20], 517U);
  EXPECT_EQ(machine.recentMicroseconds(20), recent / 2);
  machine.pass(100);
  machine.work(22, 1);
  machine.exit(22);
  EXPECT_EQ(machine.read()[20], 518U);
  machine.wait(22);
  EXPECT_EQ(machine.read()[20], 518U);

  // The job ends: the shell gets what no row has had yet, and only that.
  machine.pass(100);
  machine.work(20, 30);
  machine.exit(20);
  machine.wait(20);
  EXPECT_EQ(machine.read(), (std::map<int, std::uint64_t>{{1, 0}, {10, 30}}));
}

TEST(EndedTime, OfAChainThatEndsAtOnceGoesToWhoeverHasWaited) {
  for (const bool isWaitedForByInit : {false, true}) {
    WorkingMachine machine;
    machine.fork(WorkingMachine::kShell, 20);
    machine.fork(20, 21);
    machine.work(21, 1000);
    machine.read();
    machine.pass(100);
    machine.work(21, 3);
    if (isWaitedForByInit) {
      machine.exit(20);
      machine.exit(21);
    } else {
      machine.exit(21);
      machine.wait(21);
      machine.exit(20);
    }
    for (const int pid : {21, 20}) {
      if (machine.all().contains(pid)) {
        machine.wait(pid);
      }
    }
    // Two rows may have what the reading before has not seen, but none has the thousand again.
    const auto totals = machine.read();
    EXPECT_EQ(totals.at(1) + totals.at(10), 3U) << isWaitedForByInit;
  }
}

TEST(EndedTime, WaitsForTheOtherSide) {
  WorkingMachine machine;
  machine.fork(WorkingMachine::kShell, 20);
  machine.fork(20, 21);
  machine.work(21, 50);
  EXPECT_EQ(machine.read()[20], 50U);
  // The reading comes upon the parent before its wait, and upon the child after its end.
  const WorkingMachine::Process ended = machine.of(21);
  machine.remove(21);
  machine.pass(100);
  EXPECT_EQ(machine.read()[20], 50U);
  machine.pass(100);
  machine.of(20).children += ended.own;
  EXPECT_EQ(machine.read()[20], 50U);
  // What nobody has waited for by then (man 2 sigaction, SA_NOCLDWAIT) explains nothing later.
  machine.fork(20, 22);
  machine.work(22, 50);
  machine.read();
  machine.remove(22);
  for (int reading = 0; reading < 2; ++reading) {
    machine.pass(100);
    EXPECT_EQ(machine.read()[20], 100U);
  }
  machine.pass(100);
  machine.of(20).children += 8;
  EXPECT_EQ(machine.read()[20], 108U);
}

TEST(EndedTime, OfChildrenThatCannotBeSeenIsNoMoreThanTheMachineCanDo) {
  WorkingMachine machine;
  machine.read();
  machine.pass(100);
  machine.of(WorkingMachine::kShell).children += 360'000;
  const auto most = 101U * static_cast<unsigned>(::sysconf(_SC_NPROCESSORS_CONF));
  EXPECT_EQ(machine.read()[10], most);
}

TEST(EndedTime, APidThatIsUsedAgainBeginsAnew) {
  WorkingMachine machine;
  machine.fork(WorkingMachine::kShell, 20);
  machine.work(20, 70);
  EXPECT_EQ(machine.read()[20], 70U);
  machine.pass(100);
  machine.exit(20);
  machine.wait(20);
  machine.fork(WorkingMachine::kShell, 20);
  machine.work(20, 2);
  EXPECT_EQ(machine.read(), (std::map<int, std::uint64_t>{{1, 0}, {10, 0}}));
  machine.pass(100);
  EXPECT_EQ(machine.read()[20], 2U);
}

/// Whatever happens, no total goes down, and the rows together gain what has been used.
TEST(EndedTime, AnythingGoes) {
  std::mt19937 random(7);  // the same at every run
  const auto pick = [&random](std::size_t below) { return random() % below; };
  WorkingMachine machine;
  machine.fork(WorkingMachine::kShell, 20);  // a build that goes on
  std::map<int, std::uint64_t> before = machine.read();
  std::uint64_t gained = 0;
  int next = 21;
  for (int reading = 0; reading < 120; ++reading) {
    machine.pass(100);
    const std::uint64_t usedBefore = machine.used;
    for (std::size_t step = pick(12); step > 0; --step) {
      std::vector<int> alive;
      std::vector<int> zombies;
      for (const auto& [pid, process] : machine.all()) {
        (process.isZombie ? zombies : alive).push_back(pid);
      }
      const int pid = alive[pick(alive.size())];
      switch (pick(4)) {
        case 0:
          if (pid != 1 && pid != WorkingMachine::kShell && alive.size() < 30) {
            machine.fork(pid, next++);
          }
          break;
        case 1:
          machine.work(pid, pick(40));
          break;
        case 2:
          if (pid > 20) {
            machine.exit(pid);
          }
          break;
        default:
          if (!zombies.empty()) {
            machine.wait(zombies[pick(zombies.size())]);
          }
      }
    }
    const std::map<int, std::uint64_t> totals = machine.read();
    std::uint64_t now = 0;
    for (const auto& [pid, total] : totals) {
      ASSERT_TRUE(before.contains(pid)) << pid << " is no row: all are of one build";
      ASSERT_GE(total, before[pid]) << pid << ' ' << reading;
      now += total - before[pid];
    }
    ASSERT_EQ(now, machine.used - usedBefore) << reading;
    gained += now;
    before = totals;
  }
  EXPECT_EQ(gained, machine.used);
  EXPECT_GT(gained, 1000U);
}

}  // namespace
}  // namespace vel::test
