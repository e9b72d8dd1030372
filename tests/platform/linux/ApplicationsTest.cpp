// Which application each process belongs to, situation by situation.
#include "platform/linux/Applications.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "platform/linux/ProgramName.h"

namespace vel::test {
namespace {

struct GivenProcess {
  std::int32_t pid;
  std::int32_t parent;
  std::string_view name;
  std::int32_t group = 0;      ///< the parent's if 0
  std::int32_t session = 0;    ///< likewise
  int terminal = 0;            ///< likewise; -1 for none
  bool isShell = false;        ///< an interactive one
  std::string_view unit = {};  ///< the parent's if empty
};

class PlacedMachine {
 public:
  void add(const GivenProcess& given) {
    KnownProcess process;
    process.record.pid = given.pid;
    process.firstReading = 1;
    processes.all.push_back(process);
    std::sort(processes.all.begin(), processes.all.end(),
              [](const auto& a, const auto& b) { return a.record.pid < b.record.pid; });
    processes.index();
    change(given);
  }
  void change(const GivenProcess& given) {
    KnownProcess& process = *processes.find(given.pid);
    const KnownProcess* const parent = processes.find(given.parent);
    const KnownProcess nobody;
    const KnownProcess& from = parent == nullptr ? nobody : *parent;
    process.record.command.fill('\0');
    std::copy(given.name.begin(), given.name.end(), process.record.command.begin());
    process.isOrphan |= process.parent != 0 && process.parent != given.parent;
    process.parent = given.parent;
    process.group = given.group != 0 ? given.group : from.group;
    process.session = given.session != 0 ? given.session : from.session;
    process.terminal = given.terminal != 0 ? std::max(given.terminal, 0) : from.terminal;
    process.controlsJobs = given.isShell;
    process.unit = given.unit.empty() ? from.unit : std::hash<std::string_view>()(given.unit);
    process.isSessionUnit =
        given.unit.empty() ? from.isSessionUnit : given.unit.starts_with("session-");
    process.unitState = KnownProcess::Unit::read;
    processes.unplace(process);
  }
  void end(std::int32_t pid) {
    std::erase_if(processes.all, [pid](const auto& each) { return each.record.pid == pid; });
    processes.index();
    ended.push_back(pid);
  }
  /// Such as "1 | 10 11 12 | 20", a row each.
  std::string rows() {
    applications.place(++reading, ended);
    ended.clear();
    std::map<std::int32_t, std::string> rows;
    for (const KnownProcess& process : processes.all) {
      const std::int32_t reported = process.record.parent;
      EXPECT_EQ(reported > 1 ? reported : process.record.pid, process.leader);
      rows[process.leader] += std::to_string(process.record.pid) + ' ';
    }
    std::string text;
    for (const auto& [leader, pids] : rows) {
      EXPECT_TRUE(processes.find(leader)->leads());
      text += (text.empty() ? "" : "| ") + pids;
    }
    return text.substr(0, text.size() - 1);
  }

  KnownProcesses processes;
  Applications applications{processes};
  std::vector<std::int32_t> ended;
  std::uint32_t reading = 0;
};

TEST(Applications, OfEverydaySituations) {
  const GivenProcess init = {.pid = 1, .parent = 0, .name = "init", .group = 1, .session = 1};
  const struct {
    const char* situation;
    std::vector<GivenProcess> processes;
    const char* rows;
  } cases[] = {
      {"a build in a terminal's window, however deep",
       {{10, 1, "xterm", 10, 10},
        {11, 10, "bash", 11, 11, 5, true},
        {12, 11, "make", 12},
        {13, 12, "sh"},
        {14, 13, "g++"},
        {15, 14, "cc1plus"},
        {16, 13, "timeout", 16},
        {17, 13, "initdb"}},
       "1 | 10 | 11 | 12 13 14 15 16 17"},
      {"pipelines, jobs in the background, what a prompt runs, a shell in a shell, its job",
       {{11, 1, "zsh", 11, 11, 5, true},
        {12, 11, "a", 12},
        {13, 11, "b", 12},
        {18, 13, "b's"},
        {14, 11, "c", 14},
        {15, 11, "git"},
        {16, 11, "bash", 16, 0, 0, true},
        {17, 16, "make", 17}},
       "1 | 11 15 | 12 | 13 18 | 14 | 16 | 17"},
      {"a script gives its commands no rows, also where they have groups of their own",
       {{11, 1, "bash", 11, 11, 5, true},
        {12, 11, "ninja", 12},
        {13, 12, "sh", 13},
        {14, 13, "ld"}},
       "1 | 11 | 12 13 14"},
      {"an ssh server with logins: with a terminal and a command without one",
       {{10, 1, "sshd", 10, 10},
        {11, 10, "sshd-session"},
        {12, 11, "sshd-session"},
        {13, 12, "bash", 13, 13, 5, true},
        {14, 13, "make", 14},
        {15, 10, "sshd"},
        {16, 15, "rsync", 16, 16}},
       "1 | 10 11 12 15 | 13 | 14 | 16"},
      {"sudo with a terminal of its own, and a shell in it",
       {{11, 1, "bash", 11, 11, 5, true},
        {12, 11, "sudo", 12},
        {13, 12, "sudo", 13, 13, 6},
        {14, 13, "make", 14},
        {22, 11, "sudo", 22},
        {23, 22, "bash", 23, 23, 7, true}},
       "1 | 11 | 12 13 14 | 22 | 23"},
      {"a panel, a window manager and their programs without units",
       {{10, 1, "lightdm", 10, 10},
        {11, 10, "xfce4-session", 11, 11},
        {12, 11, "xfwm4"},
        {13, 11, "xfce4-panel"},
        {14, 13, "panel-6-systray"},
        {15, 14, "firefox"},
        {16, 15, "Web Content"},
        {17, 13, "xfce4-panel"},
        {18, 13, "i3-like"},
        {19, 18, "code"},
        {20, 19, "bash", 20, 20, 5, true}},
       "1 | 10 | 11 | 12 | 13 17 | 14 | 15 16 | 18 19 | 20"},
      {"units: their own, workers, what they share with a shell or a launcher",
       {{10, 1, "systemd", 10, 10, 0, false, "u/init.scope"},
        {11, 10, "gnome-shell", 11, 11, 0, false, "u/shell.service"},
        {12, 11, "chrome", 12, 0, 0, false, "u/app-chrome-12.scope"},
        {13, 12, "chrome"},
        {14, 10, "chrome_crashpad", 14, 14, 0, false, "u/app-chrome-12.scope"},
        {15, 11, "Xwayland"},
        {16, 10, "dbus-daemon", 16, 16, 0, false, "u/dbus.service"},
        {17, 16, "gvfsd"},
        {18, 10, "gvfsd-trash", 16, 16, 0, false, "u/dbus.service"},
        {20, 1, "nginx", 20, 20, 0, false, "nginx.service"},
        {21, 20, "nginx"},
        {22, 1, "nginx", 20, 20, 0, false, "nginx.service"},
        {24, 10, "bash", 24, 24, 5, true, "u/tab.scope"},
        {25, 10, "left behind", 25, 25, -1, false, "u/tab.scope"},
        {30, 1, "lightdm", 30, 30, 0, false, "lightdm.service"},
        {31, 30, "i3", 31, 31, 0, false, "session-2.scope"},
        {32, 1, "gimp", 32, 32, 0, false, "session-2.scope"},
        {33, 1, "mpv", 33, 33, 0, false, "session-2.scope"}},
       "1 | 10 | 11 | 12 13 14 | 15 | 16 | 17 | 18 | 20 21 22 | 24 | 25 | 30 | 31 | 32 | 33"},
      {"a daemon that runs scripts, and one under a supervisor",
       {{10, 1, "cron", 10, 10},
        {11, 10, "cron", 11, 11},
        {12, 11, "sh"},
        {13, 12, "backup"},
        {20, 1, "runsv", 20, 20},
        {21, 20, "runner", 21, 21},
        {22, 21, "make"}},
       "1 | 10 11 12 13 | 20 | 21 22"},
      {"nobody's child, and one that an early reading has made a circle of",
       {{10, 0, "bash", 10, 10, 5, true},
        {11, 10, "make", 11},
        {12, 99, "hidden", 12, 12},
        {13, 12, "helper"},
        {14, 15, "a", 14, 14},
        {15, 14, "b", 15, 15}},
       "1 | 10 | 11 | 12 13 | 14 15"},
  };
  for (const auto& [situation, given, rows] : cases) {
    PlacedMachine machine;
    machine.add(init);
    for (const GivenProcess& each : given) {
      machine.add(each);
    }
    EXPECT_EQ(machine.rows(), rows) << situation;
    EXPECT_EQ(machine.rows(), rows) << situation << ", again";
  }
}

TEST(Applications, KernelThreadsHaveARowEach) {
  PlacedMachine machine;
  machine.add({.pid = 2, .parent = 0, .name = "kthreadd"});
  machine.add({.pid = 3, .parent = 2, .name = "kswapd0"});
  for (KnownProcess& process : machine.processes.all) {
    process.unitState = KnownProcess::Unit::never;
  }
  machine.add({4, 3, "core dump"});
  EXPECT_EQ(machine.rows(), "2 | 3 | 4");
  EXPECT_EQ(machine.processes.find(3)->record.parent, 0);
}

TEST(Applications, AProcessStaysWhereItIsUnlessItDetaches) {
  PlacedMachine machine;
  machine.add({.pid = 1, .parent = 0, .name = "init", .group = 1, .session = 1});
  machine.add({10, 1, "bash", 10, 10, 5, true});
  machine.add({20, 10, "make"});
  EXPECT_EQ(machine.rows(), "1 | 10 20");  // not yet in a group of its own
  machine.change({20, 10, "make", 20});
  machine.add({21, 20, "sh"});
  machine.add({22, 21, "worker"});
  machine.add({23, 21, "daemon", 23, 23, -1});
  EXPECT_EQ(machine.rows(), "1 | 10 | 20 21 22 23");
  // Their parent ends: one has left the session. The third is first seen as an orphan.
  machine.end(21);
  machine.change({22, 1, "worker", 20, 10, 5});
  machine.change({23, 1, "daemon", 23, 23, -1});
  machine.add({24, 1, "late", 20, 10, 5});
  EXPECT_EQ(machine.rows(), "1 | 10 | 20 22 24 | 23");
  // The shell ends, and a subreaper inherits the daemon: no row takes another name.
  machine.add({30, 1, "subreaper", 30, 30, -1});
  machine.end(10);
  machine.change({20, 1, "make", 20, 10, 5});
  machine.change({22, 30, "worker", 20, 10, 5});
  machine.change({23, 30, "daemon", 23, 23, -1});
  machine.add({31, 30, "its own"});
  EXPECT_EQ(machine.rows(), "1 | 20 22 24 | 23 | 30 31");
  // Without its first process the job is none any more.
  machine.end(20);
  EXPECT_EQ(machine.rows(), "1 | 22 | 23 | 24 | 30 31");
}

TEST(Applications, AUnitOutlivesItsFirstProcessAndTakesInWhatIsPutIntoIt) {
  PlacedMachine machine;
  machine.add({1, 0, "systemd", 1, 1, 0, false, "init.scope"});
  machine.add({10, 1, "start", 10, 10, 0, false, "a.service"});
  machine.add({11, 10, "server"});
  machine.add({12, 10, "worker"});
  machine.add({20, 1, "other", 20, 20, 0, false, "b.service"});
  EXPECT_EQ(machine.rows(), "1 | 10 11 12 | 20");
  machine.end(10);
  machine.change({11, 1, "server", 10, 10, 0, false, "a.service"});
  machine.change({12, 1, "worker", 10, 10, 0, false, "a.service"});
  EXPECT_EQ(machine.rows(), "1 | 11 12 | 20");
  machine.change({20, 1, "other", 20, 20, 0, false, "a.service"});
  EXPECT_EQ(machine.rows(), "1 | 11 12 20");
  machine.end(11);
  EXPECT_EQ(machine.rows(), "1 | 12 20");
}

TEST(Applications, JobsThatHadEndedBeforeAreNotTheirLaunchers) {
  for (const auto& [name, isShell, credit] :
       {std::tuple("make", false, 9U), std::tuple("openbox", false, 0U),
        std::tuple("bash", true, 0U), std::tuple("systemd", false, 0U)}) {
    PlacedMachine machine;
    machine.add({10, 0, name, 10, 10, 5, isShell});
    machine.processes.find(10)->credit = 9;
    machine.rows();
    EXPECT_EQ(machine.processes.find(10)->contribution(), credit) << name;
  }
}

TEST(Applications, WhoStopsLeadingLeavesNobodyWithoutARow) {
  PlacedMachine machine;
  machine.add({1, 0, "systemd", 1, 1, 0, false, "init.scope"});
  machine.add({10, 1, "a", 10, 10, 0, false, "a.service"});
  machine.add({11, 12, "its parent is not seen", 11, 11, 0, false, "a.service"});
  machine.add({13, 11, "child"});
  EXPECT_EQ(machine.rows(), "1 | 10 | 11 13");
  machine.add({12, 10, "its parent"});
  EXPECT_EQ(machine.rows(), "1 | 10 11 12 13");
}

/// Their totals must not jump when a process comes or goes with what it has used before.
TEST(Applications, TimeThatARowHasHadStaysWithIt) {
  PlacedMachine machine;
  machine.add({1, 0, "systemd", 1, 1, 0, false, "init.scope"});
  machine.add({10, 1, "a", 10, 10, 0, false, "a.service"});
  machine.add({11, 10, "helper"});
  machine.add({20, 1, "b", 20, 20, 0, false, "b.service"});
  const auto total = [&machine](std::int32_t leader) {
    std::uint64_t sum = 0;
    for (const KnownProcess& process : machine.processes.all) {
      sum += process.leader == leader ? process.contribution() : 0;
    }
    return sum;
  };
  machine.processes.find(11)->own.userNanoseconds = 70;
  machine.rows();
  EXPECT_EQ(total(10), 70U);
  machine.change({11, 10, "helper", 10, 10, 0, false, "b.service"});
  EXPECT_EQ(machine.rows(), "1 | 10 | 11 20");
  machine.processes.find(11)->own.userNanoseconds += 5;
  EXPECT_EQ(total(10), 70U);
  EXPECT_EQ(total(20), 5U);
  // One that has just been started brings all that it has used.
  machine.add({12, 20, "new"});
  machine.processes.find(12)->own.userNanoseconds = 3;
  machine.processes.find(12)->isNewborn = true;
  machine.processes.find(12)->firstReading = machine.reading + 1;
  machine.rows();
  EXPECT_EQ(total(20), 8U);
}

TEST(ProgramName, OfLongNamesAndOfWhatAShellRuns) {
  using namespace std::string_view_literals;
  const std::tuple<std::string_view, std::string_view, std::string_view> cases[] = {
      {"make", "make\0-j2\0"sv, "make"},
      {"gnome-terminal-", "/usr/libexec/gnome-terminal-server\0"sv, "gnome-terminal-server"},
      {"long-script-nam", "/usr/bin/python3\0./long-script-name.py\0x\0"sv, "long-script-name.py"},
      {"gnome-terminal-", "something else\0"sv, "gnome-terminal-"},
      {"gnome-terminal-", ""sv, "gnome-terminal-"},
      {"sh", "sh\0/opt/backup.sh\0-v\0"sv, "backup.sh"},
      {"bash", "/bin/bash\0-e\0run\0"sv, "run"},
      {"sh", "/bin/sh\0-c\0/usr/bin/rsync -a x y\0"sv, "rsync"},
      {"sh", "sh\0-ec\0 exec nice -n 5 /bin/ninja -C x\0"sv, "ninja"},
      {"bash", "bash\0/dev/fd/3\0"sv, "bash"},
      {"sh", "sh\0-c\0a; b\0"sv, "sh"},
      {"sh", "sh\0-c\0"sv, "sh"},
      {"dash", "dash\0"sv, "dash"},
  };
  for (const auto& [command, arguments, expected] : cases) {
    EXPECT_EQ(programName(command, arguments), expected) << arguments;
  }
  EXPECT_FALSE(needsCommandLine("bash", true));
}

}  // namespace
}  // namespace vel::test
