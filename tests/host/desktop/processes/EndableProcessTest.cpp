// Real processes, ended or spared.
#include "host/desktop/processes/EndableProcess.h"

#include <gtest/gtest.h>
#include <pwd.h>

#include <fstream>

#include "host/desktop/kit/BootTime.h"
#include "support/Child.h"

namespace vel::test {

using Problem = std::optional<EndProblem>;
using Process = std::shared_ptr<const EndableProcess>;

/// A moment after everything that has been started so far.
std::chrono::nanoseconds afterAll() {
  return bootTime() + std::chrono::seconds(1);
}

/// Throws if there is a problem.
Process opened(std::int64_t pid, std::string_view name) {
  return std::get<Process>(EndableProcess::open(pid, name, afterAll()));
}

Problem problem(std::int64_t pid, std::string_view name, std::chrono::nanoseconds shownAt) {
  const auto opened = EndableProcess::open(pid, name, shownAt);
  const auto* problem = std::get_if<EndProblem>(&opened);
  return problem != nullptr ? Problem(*problem) : std::nullopt;
}

TEST(EndableProcess, EndsTheOneThatWasShown) {
  for (const char* name : {") R (a) Z 1 (b", "a\n\x1b[31m\tb\xff"}) {
    for (const int number : {SIGTERM, SIGKILL}) {
      SCOPED_TRACE(testing::Message() << name << ", signal " << number);
      Child child(name);
      const Child other(name);
      const Process process = opened(child.pid(), name);
      EXPECT_EQ(process->pid(), child.pid());
      EXPECT_EQ(process->name(), name);
      EXPECT_EQ(process->user(), getpwuid(geteuid())->pw_name);
      EXPECT_EQ(process->signal(number), std::nullopt);
      EXPECT_EQ(child.reap(), number);
      EXPECT_TRUE(other.isAlive());
    }
  }
}

TEST(EndableProcess, IsNoOther) {
  const auto before = bootTime();
  const Child child("sleep");
  const std::int64_t pid = child.pid();
  for (const char* name : {"slee", "sleeper", ""}) {
    EXPECT_EQ(problem(pid, name, afterAll()), EndProblem::isAnother) << name;
  }
  EXPECT_EQ(problem(pid, "sleep", before), EndProblem::isAnother);
  for (const std::int64_t number : {std::int64_t(0), -pid, pid + (std::int64_t(1) << 32)}) {
    EXPECT_EQ(problem(number, "sleep", afterAll()), EndProblem::endedAlready) << number;
  }
  std::string second;
  if (std::getline(std::ifstream("/proc/2/comm"), second) && second == "kthreadd") {
    EXPECT_EQ(problem(2, second, afterAll()), EndProblem::kernelThread);
  }
}

TEST(EndableProcess, MayHaveEnded) {
  Child child("sleep");
  const Process process = opened(child.pid(), "sleep");
  const auto expectEnded = [&] {
    EXPECT_EQ(process->signal(SIGTERM), EndProblem::endedAlready);
    EXPECT_EQ(problem(child.pid(), "sleep", afterAll()), EndProblem::endedAlready);
  };
  child.kill();
  expectEnded();
  child.reap();
  expectEnded();
}

/// With the number, if this user may choose the next one (man 7 pid_namespaces); else with any.
std::unique_ptr<Child> startWithNumber(pid_t pid, const char* name) {
  for (;;) {
    std::ofstream last("/proc/sys/kernel/ns_last_pid");
    last << pid - 1 << std::flush;
    auto child = std::make_unique<Child>(name);
    if (!last || child->pid() == pid) {
      return child;
    }
  }
}

TEST(EndableProcess, IsNotTheNextOfItsNumber) {
  Child first("sleep");
  std::chrono::nanoseconds shownAt{0};
  do {  // Until the clock has left the tick of its start.
    shownAt = bootTime();
  } while (problem(first.pid(), "sleep", shownAt));
  const Process process = opened(first.pid(), "sleep");
  first.kill();
  first.reap();
  const auto next = startWithNumber(first.pid(), "sleep");
  EXPECT_EQ(process->signal(SIGKILL), EndProblem::endedAlready);
  EXPECT_EQ(problem(next->pid(), "sleep", shownAt), EndProblem::isAnother);
  EXPECT_TRUE(next->isAlive());
}

TEST(EndableProcess, MayBeAnotherUsers) {
  const Child child("sleep");
  const bool isRoot = geteuid() == 0;
  std::string first;
  std::getline(std::ifstream("/proc/1/comm"), first);
  const auto ask = [&] {
    constexpr uid_t kNobody = 65534;
    if (isRoot && setresuid(kNobody, kNobody, kNobody) != 0) {
      _exit(255);
    }
    const Process process = isRoot ? opened(child.pid(), "sleep") : opened(1, first);
    const bool isMine = process->user() == getpwuid(geteuid())->pw_name;
    _exit(isMine || process->signal(SIGTERM) == EndProblem::notPermitted ? 0 : 1);
  };
  EXPECT_EXIT(ask(), testing::ExitedWithCode(0), "");
  EXPECT_TRUE(child.isAlive());
}

}  // namespace vel::test
