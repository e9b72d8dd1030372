// Real processes, ended or spared.
#include "platform/linux/EndableApplication.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <pwd.h>
#include <utmp.h>

#include <algorithm>
#include <fstream>
#include <memory>
#include <optional>
#include <string>

#include "platform/linux/ProcPidStat.h"
#include "platform/linux/ProcessDetails.h"
#include "support/Child.h"
#include "support/Family.h"

namespace vel::test {
namespace {

using Way = EndableApplication::Way;
using Problem = std::optional<EndProblem>;

/// A moment after everything that has been started so far.
std::chrono::nanoseconds afterAll() {
  timespec now = {};
  ::clock_gettime(CLOCK_BOOTTIME, &now);
  return std::chrono::seconds(now.tv_sec + 1);
}

ProcPidStat statOf(pid_t pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  const std::string text(std::istreambuf_iterator<char>(file), {});
  ProcPidStat stat = parseProcPidStat(text).value();
  stat.name = {};
  return stat;
}

struct EndableApplicationTest : testing::Test {
  /// Throws if there is a problem.
  EndableApplication opened(pid_t pid) {
    return std::get<EndableApplication>(EndableApplication::open(kernel, pid, afterAll()));
  }

  Problem problem(std::int64_t pid, std::chrono::nanoseconds shownAt = afterAll()) {
    const auto opened = EndableApplication::open(kernel, pid, shownAt);
    const auto* problem = std::get_if<EndProblem>(&opened);
    return problem != nullptr ? Problem(*problem) : std::nullopt;
  }

  LinuxKernel kernel;
};

TEST_F(EndableApplicationTest, EndsARowWholeAndNoOther) {
  for (const Way way : {Way::end, Way::force}) {
    SCOPED_TRACE(way == Way::force);
    Family family(") R (a\n\x1b[1m\xff", 2);
    family.startAnother(3);
    const Family other("other", 1);
    EndableApplication application = opened(family.pid());
    EXPECT_EQ(application.size(), 6U);
    EXPECT_EQ(application.name(), ") R (a\n\x1b[1m\xff");
    EXPECT_EQ(application.user(), ::getpwuid(::geteuid())->pw_name);
    EXPECT_FALSE(application.isShell() || application.hasThisProcess());
    EXPECT_TRUE(application.end(way).empty());
    for (std::size_t i = 0; i < 6; ++i) {
      EXPECT_TRUE(family.hasEnded(i)) << i;
    }
    EXPECT_EQ(application.startedMeanwhile().size(), 0U);
    EXPECT_TRUE(other.lives(0) && other.lives(1));
  }
}

TEST_F(EndableApplicationTest, AsksAgainAboutWhatWasStartedMeanwhile) {
  Family family("make", 1);
  EndableApplication application = opened(family.pid());
  family.startAnother();
  family.startAnother();
  EXPECT_TRUE(application.end(Way::end).empty());
  EXPECT_TRUE(family.hasEnded(0) && family.hasEnded(1));
  EXPECT_TRUE(family.lives(2));
  ::kill(family.processes()[3], SIGKILL);
  EXPECT_TRUE(family.hasEnded(3));
  EndableApplication rest = application.startedMeanwhile();
  ASSERT_EQ(rest.size(), 1U);
  EXPECT_TRUE(rest.isRest());
  EXPECT_EQ(rest.name(), "make");
  EXPECT_TRUE(rest.end(Way::end).empty());
  EXPECT_TRUE(family.hasEnded(2));
  EXPECT_EQ(rest.startedMeanwhile().size(), 0U);
}

TEST_F(EndableApplicationTest, AShellThatControlsJobsEnds) {
  int terminal = -1;
  int slave = -1;
  ASSERT_EQ(::openpty(&terminal, &slave, nullptr, nullptr, nullptr), 0);
  const FileDescriptor master(terminal);
  const Family shell([slave] {
    ::login_tty(slave);
    ::setenv("PS1", "ready ", 1);
    ::execlp("bash", "bash", "--norc", "--noprofile", "-i", nullptr);
  });
  std::string said;
  for (char byte = 0; !said.ends_with("ready ");) {
    ASSERT_EQ(::read(terminal, &byte, 1), 1) << said;
    said += byte;
  }
  while (statOf(shell.pid()).state != 'S') {  // Until it waits for what is typed.
  }
  EndableApplication application = opened(shell.pid());
  EXPECT_TRUE(application.isShell());
  EXPECT_TRUE(application.end(Way::end).empty());
  EXPECT_TRUE(shell.hasEnded(0));
  ::close(slave);
}

TEST_F(EndableApplicationTest, EndsItselfLast) {
  Family family([&family] {
    family.startChild(family.nextQuestion());
    (void)family.nextQuestion();
    LinuxKernel own;
    auto application =
        std::get<EndableApplication>(EndableApplication::open(own, ::getpid(), afterAll()));
    (void)application.end(application.hasThisProcess() ? Way::force : Way::end);
    ::pause();
  });
  family.startAnother();
  family.ask();
  EXPECT_TRUE(family.hasEnded(0) && family.hasEnded(1));
}

TEST_F(EndableApplicationTest, TellsWhatIsNotTheRowThatWasShown) {
  const auto before = afterAll() - std::chrono::seconds(2);
  const Family family("sleep", 1);
  const std::int64_t pid = family.pid();
  EXPECT_EQ(problem(pid, before), EndProblem::isAnother);
  for (const std::int64_t number : {std::int64_t(0), -pid, pid + (std::int64_t(1) << 32)}) {
    EXPECT_EQ(problem(number), EndProblem::endedAlready) << number;
  }
  EXPECT_EQ(problem(family.processes()[1]), EndProblem::isAnother);
  std::string second;
  if (std::getline(std::ifstream("/proc/2/comm"), second) && second == "kthreadd") {
    EXPECT_EQ(problem(2), EndProblem::kernelThread);
  }
  EndableApplication application = opened(family.pid());
  ::kill(family.pid(), SIGKILL);
  EXPECT_TRUE(family.hasEnded(0));
  EXPECT_EQ(problem(pid), EndProblem::endedAlready);
  // What was asked about ends nevertheless.
  EXPECT_TRUE(application.end(Way::end).empty());
  EXPECT_TRUE(family.hasEnded(1));
  const auto failures = application.end(Way::end);
  ASSERT_EQ(failures.size(), 1U);
  EXPECT_EQ(failures[0].problem, EndProblem::endedAlready);
}

TEST_F(EndableApplicationTest, NamesWhatMayNotBeEnded) {
  const Family family("theirs", 1);
  const bool isRoot = ::geteuid() == 0;
  const auto ask = [&] {
    constexpr uid_t kNobody = 65534;
    if (isRoot && ::setresuid(kNobody, kNobody, kNobody) != 0) {
      ::_exit(255);
    }
    LinuxKernel theirs;
    auto application = std::get<EndableApplication>(
        EndableApplication::open(theirs, isRoot ? family.pid() : 1, afterAll()));
    const auto failures = application.end(Way::end);
    const bool areNamed = std::all_of(failures.begin(), failures.end(), [&](const auto& failure) {
      return failure.problem == EndProblem::notPermitted && !failure.name.empty();
    });
    ::_exit(failures.size() == application.size() && areNamed ? 0 : 1);
  };
  EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "");
  EXPECT_TRUE(family.lives(0) && family.lives(1));
}

/// With the number, if this user may choose the next one (man 7 pid_namespaces); else with any.
std::unique_ptr<Child> startWithNumber(pid_t pid) {
  for (;;) {
    std::ofstream last("/proc/sys/kernel/ns_last_pid");
    last << pid - 1 << std::flush;
    auto child = std::make_unique<Child>("sleep");
    if (!last || child->pid() == pid) {
      return child;
    }
  }
}

TEST_F(EndableApplicationTest, ANumberThatHasGoneToAnotherStartIsNeverSignalled) {
  Child first("sleep");
  const std::uint64_t start = statOf(first.pid()).startTicks;
  const EndableProcess held(kernel.processDirectory(), first.pid(), start);
  EXPECT_EQ(held.problem(), std::nullopt);
  first.kill();
  EXPECT_EQ(held.signal(SIGKILL), EndProblem::endedAlready) << "a zombie";
  first.reap();
  std::unique_ptr<Child> next;
  do {  // Until the clock has left the tick of its start.
    next.reset();
    next = startWithNumber(first.pid());
  } while (statOf(next->pid()).startTicks == start);
  const EndableProcess asked(kernel.processDirectory(), first.pid(), start);
  for (const EndableProcess* process : {&held, &asked}) {
    EXPECT_EQ(process->signal(SIGKILL), EndProblem::endedAlready);
  }
  EXPECT_TRUE(next->isAlive());
}

TEST_F(EndableApplicationTest, ItsDetailsAreReadWhenAsked) {
  const Child child([] { ::execl("/bin/sh", "a b", "-c", "kill -STOP $$; :", "\n\xff", nullptr); });
  ProcessDetails details(kernel.processDirectory());
  EXPECT_EQ(details.commandLine(child.pid()), "a b -c kill -STOP $$; : \n\xff");
  EXPECT_EQ(details.user(child.pid()), ::getpwuid(::geteuid())->pw_name);
  child.kill();
  EXPECT_EQ(details.commandLine(child.pid()), "");
  EXPECT_EQ(details.user(-1), std::nullopt);
  if (::geteuid() == 0) {
    const Child nameless([] { (void)!::seteuid(123'456'789); });
    EXPECT_EQ(details.user(nameless.pid()), "123456789");
  }
}

}  // namespace
}  // namespace vel::test
