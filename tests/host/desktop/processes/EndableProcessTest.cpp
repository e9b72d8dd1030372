// Real processes, ended or spared.
#include "host/desktop/processes/EndableProcess.h"

#include <gtest/gtest.h>
#include <pwd.h>

#include <fstream>

#include "Child.h"

namespace vel::test {

using Problem = std::optional<EndProblem>;
using Process = std::shared_ptr<const EndableProcess>;

Process opened(const Child& child) {
  const auto opened = EndableProcess::open(child.pid(), child.name(), afterAll());
  const auto* process = std::get_if<Process>(&opened);
  return process != nullptr ? *process : nullptr;
}

Problem problem(std::int64_t pid, std::string_view name, std::chrono::nanoseconds shownAt) {
  const auto opened = EndableProcess::open(pid, name, shownAt);
  const auto* problem = std::get_if<EndProblem>(&opened);
  return problem != nullptr ? Problem(*problem) : std::nullopt;
}

TEST(EndableProcess, EndsTheOneThatWasShown) {
  for (const char* name : {"sleep", ") R (a) Z 1 (b", "a\n\x1b[31m\tb", "<b>x</b> &a %n", "\xff"}) {
    for (const int number : {SIGTERM, SIGKILL}) {
      SCOPED_TRACE(testing::Message() << name << ", signal " << number);
      Child child(name);
      const Child other(name);
      const Process process = opened(child);
      ASSERT_NE(process, nullptr);
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
  const struct {
    std::int64_t pid;
    const char* name;
    std::chrono::nanoseconds shownAt;
    EndProblem problem;
  } cases[] = {
      {pid, "slee", afterAll(), EndProblem::isAnother},
      {pid, "sleeper", afterAll(), EndProblem::isAnother},
      {pid, "", afterAll(), EndProblem::isAnother},
      {pid, "sleep", before, EndProblem::isAnother},
      {pid, "sleep", {}, EndProblem::isAnother},
      {0, "sleep", afterAll(), EndProblem::endedAlready},
      {-pid, "sleep", afterAll(), EndProblem::endedAlready},
      {pid + (std::int64_t(1) << 32), "sleep", afterAll(), EndProblem::endedAlready},
  };
  for (const auto& [number, name, shownAt, expected] : cases) {
    SCOPED_TRACE(testing::Message() << number << ' ' << name);
    EXPECT_EQ(problem(number, name, shownAt), expected);
  }
  std::string second;
  if (std::getline(std::ifstream("/proc/2/comm"), second) && second == "kthreadd") {
    EXPECT_EQ(problem(2, second, afterAll()), EndProblem::kernelThread);
  }
}

TEST(EndableProcess, MayHaveEnded) {
  Child child("sleep");
  const Process process = opened(child);
  ASSERT_NE(process, nullptr);
  child.end();
  for (const bool reaped : {false, true}) {
    SCOPED_TRACE(reaped);
    if (reaped) {
      EXPECT_EQ(child.reap(), SIGKILL);
    }
    EXPECT_EQ(process->signal(SIGTERM), EndProblem::endedAlready);
    EXPECT_EQ(problem(child.pid(), "sleep", afterAll()), EndProblem::endedAlready);
  }
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
  const Process process = opened(first);
  ASSERT_NE(process, nullptr);
  first.end();
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
  const pid_t asker = fork();
  if (asker == 0) {
    constexpr uid_t kNobody = 65534;
    if (isRoot && setresuid(kNobody, kNobody, kNobody) != 0) {
      _exit(255);
    }
    const auto opened = isRoot ? EndableProcess::open(child.pid(), "sleep", afterAll())
                               : EndableProcess::open(1, first, afterAll());
    const auto* process = std::get_if<Process>(&opened);
    const Problem problem = process != nullptr ? (*process)->signal(SIGTERM) : std::nullopt;
    _exit(problem ? int(*problem) : 254);
  }
  int status = 0;
  EXPECT_EQ(waitpid(asker, &status, 0), asker);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), int(EndProblem::notPermitted));
  EXPECT_TRUE(child.isAlive());
}

}  // namespace vel::test
