// Shares, folding and rankings of real processes against what their stat files say, read beside the
// module.
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iterator>
#include <numeric>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "platform/foundation/Clock.h"
#include "platform/linux/LinuxKernel.h"
#include "processes/VELCPUProcessesInfo.h"
#include "support/InstalledPlatform.h"

namespace vel::test {
namespace {

/// A minute ahead, at which every process is old enough for the rankings.
class LaterClock : public Clock {
 public:
  [[nodiscard]] double now() const override { return clock_.now() + 60.0; }
  void sleep(double seconds) override { clock_.sleep(seconds); }

 private:
  SystemClock clock_;
};

std::atomic<std::uint64_t> rounds = 0;

[[noreturn]] void burn() {
  for (;;) {
    rounds = rounds + 1;
  }
}

int start(const char* name, const std::function<void()>& work) {
  const int pid = fork();
  if (pid == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_NAME, name);
    work();
    for (;;) {
      pause();
    }
  }
  return pid;
}

/// What came after the command name in the process's stat file; nothing once it has ended.
std::vector<std::int64_t> statOf(int pid) {
  std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
  const std::string text{std::istreambuf_iterator(file), {}};
  std::istringstream fields(text.substr(std::min(text.size(), text.rfind(')') + 3)));
  return {std::istream_iterator<std::int64_t>(fields), {}};
}

double secondsOf(const std::vector<int>& pids) {
  return std::accumulate(pids.begin(), pids.end(), 0.0, [](double sum, int pid) {
    const auto stat = statOf(pid);
    return sum + (stat.empty() ? 0.0
                               : static_cast<double>(stat[10] + stat[11]) /
                                     static_cast<double>(sysconf(_SC_CLK_TCK)));
  });
}

/// The children of a process, once there are so many.
std::vector<int> childrenOf(int pid, std::size_t count) {
  const std::string path =
      "/proc/" + std::to_string(pid) + "/task/" + std::to_string(pid) + "/children";
  std::vector<int> children;
  while (children.size() < count) {
    std::ifstream file(path);
    children.assign(std::istream_iterator<int>(file), {});
  }
  return children;
}

class ProcessShares : public testing::Test {
 protected:
  /// Under a launcher's name, so that what is started here is an application each.
  ProcessShares() { prctl(PR_SET_NAME, "openbox"); }
  ~ProcessShares() override {
    for (const int pid : {one, three, parent, terminal, asleep, brief}) {
      kill(pid, SIGKILL);
      waitpid(pid, nullptr, 0);
    }
  }

  [[nodiscard]] const ProcessTable::Entry& entry(int pid) const {
    const auto* const found = processes.allProcInfos().find(pid);
    return found != nullptr ? *found : throw std::runtime_error("no entry");
  }
  [[nodiscard]] std::vector<int> childrenIn(int pid) const {
    std::vector<int> children;
    processes.allProcInfos().forEachChild(entry(pid),
                                          [&](int child) { children.push_back(child); });
    std::sort(children.begin(), children.end());
    return children;
  }

  /// The names of the busy ones in a ranking, in its order.
  [[nodiscard]] std::vector<std::string> busyOnesIn(
      const std::optional<std::vector<ProcessEntry>>& rows) const {
    std::vector<std::string> names;
    for (const auto& row : rows.value()) {
      const int pid = std::stoi(row.pid);
      if (pid == one || pid == three || pid == parent) {
        names.push_back(row.name);
      }
    }
    return names;
  }

  void waitForWork(double seconds) const {
    while (secondsOf({one}) < seconds) {
      std::this_thread::yield();
    }
  }

  InstalledPlatform<LinuxKernel, LaterClock> machine;
  VELCPUProcessesInfo processes;
  const int one = start("vel-one", burn);
  const int three = start("vel-three", [] {
    std::thread(burn).detach();
    std::thread(burn).detach();
    burn();
  });
  const int parent = start("vel-parent", [] {
    start("vel-child", burn);
    start("vel-child", burn);
  });
  const int terminal =
      start("vel-terminal", [] { start("vel-shell", [] { start("vel-editor", burn); }); });
  const int asleep = start("vel-asleep", [] {});
  const int brief = start("vel-brief", [] {
    signal(SIGCHLD, SIG_IGN);
    start("vel-brief-child", burn);
  });
};

TEST_F(ProcessShares, AreThoseOfTheStatFiles) {
  const std::vector<int> children = childrenOf(parent, 2);
  const int shell = childrenOf(terminal, 1)[0];
  const int editor = childrenOf(shell, 1)[0];
  const int briefChild = childrenOf(brief, 1)[0];
  const std::vector<std::vector<int>> entries = {
      {one}, {three}, {parent, children[0], children[1]}, {terminal, shell, editor}, {asleep}};
  // Before and after each of two readings of the module.
  std::vector<double> seconds[4];
  const auto note = [&](std::vector<double>& here) {
    std::transform(entries.begin(), entries.end(), std::back_inserter(here), secondsOf);
  };
  waitForWork(0.1);
  note(seconds[0]);
  processes.getAllProcessInfos();
  const double begin = entry(one).runningTime;
  const double briefBefore = entry(brief).totalCPUTime;
  EXPECT_GT(briefBefore, 0.0);
  note(seconds[1]);
  kill(briefChild, SIGKILL);
  waitForWork(secondsOf({one}) + 0.3);
  while (!statOf(briefChild).empty()) {
  }
  note(seconds[2]);
  processes.getAllProcessInfos();
  const double elapsed = entry(one).runningTime - begin;
  note(seconds[3]);

  const double tick = 1.0 / static_cast<double>(sysconf(_SC_CLK_TCK));
  for (std::size_t i = 0; i < entries.size(); ++i) {
    SCOPED_TRACE(i);
    // The file has whole ticks of user and of system time, for every process of the entry.
    const double slack = 2 * tick * static_cast<double>(entries[i].size());
    const double used = double{entry(entries[i][0]).CPUDynamic.value()} * elapsed;
    EXPECT_GT(used, seconds[2][i] - seconds[1][i] - slack);
    EXPECT_LT(used, seconds[3][i] - seconds[0][i] + slack);
  }
  EXPECT_EQ(entry(asleep).CPUDynamic, 0.0F);

  EXPECT_EQ(childrenIn(parent), children);
  EXPECT_EQ(entry(three).threads, 3);
  EXPECT_EQ(entry(parent).threads, 3);
  EXPECT_EQ(childrenIn(terminal), (std::vector{shell, editor}));
  EXPECT_TRUE(childrenIn(brief).empty());
  EXPECT_GE(entry(brief).totalCPUTime, briefBefore);  // though nobody has waited for the child

  // The machine's own processes may have some of the five rows.
  const std::vector<std::string> busiest = {"vel-three", "vel-parent", "vel-one"};
  for (const auto& ranking :
       {processes.getTop5CPUProccessesAvgSinceProcessStart(), processes.getTop5CPUProccesses()}) {
    const auto names = busyOnesIn(ranking);
    ASSERT_LE(names.size(), busiest.size());
    EXPECT_TRUE(std::equal(names.begin(), names.end(), busiest.begin())) << names.back();
  }
  EXPECT_FALSE(busyOnesIn(processes.getTop5CPUProccesses()).empty());
}

}  // namespace
}  // namespace vel::test
