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
#include <limits>
#include <optional>
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

/// The machine's, but what this program starts counts as started by the first process.
struct StartersKernel : LinuxKernel {
  std::optional<ProcessRecord> process(std::int32_t pid) override {
    auto record = LinuxKernel::process(pid);
    if (record && record->parent == getpid()) {
      record->parent = 1;
    }
    return record;
  }
};

/// A minute ahead, at which every process is old enough for the rankings.
struct LaterClock : SystemClock {
  [[nodiscard]] double now() const override { return SystemClock::now() + 60.0; }
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

const double kTick = 1.0 / static_cast<double>(sysconf(_SC_CLK_TCK));  // seconds

double secondsOf(const std::vector<int>& pids) {
  double sum = 0;
  for (const int pid : pids) {
    std::ifstream file("/proc/" + std::to_string(pid) + "/stat");
    file.ignore(std::numeric_limits<std::streamsize>::max(), ')').ignore(3);  // name and state
    const std::vector<std::int64_t> fields(std::istream_iterator<std::int64_t>(file), {});
    sum += static_cast<double>(fields.at(10) + fields.at(11)) * kTick;
  }
  return sum;
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
  ~ProcessShares() override {
    for (const int pid : {one, three, parent, asleep}) {
      kill(pid, SIGKILL);
      waitpid(pid, nullptr, 0);
    }
  }

  [[nodiscard]] const ProcessTable::Entry& entry(int pid) const {
    const auto* const found = processes.allProcInfos().find(pid);
    return found != nullptr ? *found : throw std::runtime_error("no entry");
  }

  void waitForWork(double seconds) const {
    while (secondsOf({one}) < seconds) {
      std::this_thread::yield();
    }
  }

  InstalledPlatform<StartersKernel, LaterClock> machine;
  VELCPUProcessesInfo processes;
  const int one = start("busy-one", burn);
  const int three = start("busy-three", [] {
    std::thread(burn).detach();
    std::thread(burn).detach();
    burn();
  });
  const int parent = start("busy-parent", [] {
    start("child", burn);
    start("child", burn);
  });
  const int asleep = start("asleep", [] {});
};

TEST_F(ProcessShares, AreThoseOfTheStatFiles) {
  const std::vector<int> children = childrenOf(parent, 2);
  const std::vector<std::vector<int>> entries = {
      {one}, {three}, {parent, children[0], children[1]}, {asleep}};
  // Before and after each of two readings of the module.
  std::vector<double> seconds[4];
  const auto note = [&](std::vector<double>& here) {
    std::transform(entries.begin(), entries.end(), std::back_inserter(here), secondsOf);
  };
  waitForWork(0.1);
  note(seconds[0]);
  const double beforeFirst = machine.clock.now();
  processes.getAllProcessInfos();
  const double afterFirst = machine.clock.now();
  note(seconds[1]);
  waitForWork(secondsOf({one}) + 0.3);
  note(seconds[2]);
  const double shortest = machine.clock.now() - afterFirst;
  processes.getAllProcessInfos();
  const double longest = machine.clock.now() - beforeFirst;
  note(seconds[3]);

  for (std::size_t i = 0; i < entries.size(); ++i) {
    SCOPED_TRACE(i);
    // The file has whole ticks of user and of system time, for every process of the entry.
    const double slack = 2 * kTick * static_cast<double>(entries[i].size());
    const double share{entry(entries[i][0]).CPUDynamic.value()};
    EXPECT_GT(share * longest, seconds[2][i] - seconds[1][i] - slack);
    EXPECT_LT(share * shortest, seconds[3][i] - seconds[0][i] + slack);
  }
  EXPECT_EQ(entry(asleep).CPUDynamic, 0.0F);

  EXPECT_EQ(entry(three).threads, 3);
  EXPECT_EQ(entry(parent).threads, 3);
  EXPECT_EQ(processes.allProcInfos().find(children[0]), nullptr);
  for (const auto& ranking :
       {processes.getTop5CPUProccesses(), processes.getTop5CPUProccessesAvgSinceProcessStart()}) {
    std::string busiest;
    for (const ProcessEntry& row : ranking.value()) {
      busiest += row.name.starts_with("busy-") ? row.name + ' ' : "";
    }
    EXPECT_EQ(busiest, "busy-three busy-parent busy-one ");
  }
}

}  // namespace
}  // namespace vel::test
