// Which part of the time that the machine's processors are busy do the rows of the process list
// explain? Reads once a second and prints lines "all SHARE", "five SHARE", "busy CORES" and, for
// the names that took most of the five rows, "row SHARE NAME".
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "platform/foundation/Clock.h"
#include "platform/linux/LinuxKernel.h"
#include "processes/VELCPUProcessesInfo.h"
#include "support/InstalledPlatform.h"

namespace vel::test {
namespace {

/// CPU seconds of all processors since the machine was started: user, nice, system, irq and softirq
/// of the first line (man 5 proc). What a hypervisor gave to others is no process's.
double busySeconds() {
  std::ifstream file("/proc/stat");
  std::string name;
  std::int64_t user = 0;
  std::int64_t nice = 0;
  std::int64_t system = 0;
  std::int64_t idle = 0;
  std::int64_t iowait = 0;
  std::int64_t irq = 0;
  std::int64_t softirq = 0;
  if (!(file >> name >> user >> nice >> system >> idle >> iowait >> irq >> softirq)) {
    std::fprintf(stderr, "coverage: /proc/stat cannot be read\n");
    std::exit(1);
  }
  return static_cast<double>(user + nice + system + irq + softirq) /
         static_cast<double>(sysconf(_SC_CLK_TCK));
}

class Coverage {
 public:
  /// The first reading has nothing to be compared with.
  Coverage() { processes_.getAllProcessInfos(); }

  void read() {
    const double busy = busySeconds();
    const double now = machine_.clock.now();
    processes_.getAllProcessInfos();
    const double elapsed = now - std::exchange(lastTime_, now);
    elapsed_ += elapsed;
    busy_ += busy - std::exchange(lastBusy_, busy);
    for (const ProcessTable::Entry& entry : processes_.allProcInfos().entries()) {
      if (entry.isTopLevel()) {
        all_ += entry.CPUDynamic.value_or(0.0F) * elapsed;
      }
    }
    const auto rows = processes_.getTop5CPUProccesses();
    for (const ProcessEntry& row : rows.value()) {
      five_ += row.share * elapsed;
      rows_[row.name] += row.share * elapsed;
    }
  }

  void forget() { elapsed_ = busy_ = all_ = five_ = 0.0, rows_.clear(); }

  void print() const {
    std::printf("all %.3f\nfive %.3f\nbusy %.3f\n", all_ / busy_, five_ / busy_, busy_ / elapsed_);
    std::vector<std::pair<double, std::string>> rows;
    for (const auto& [name, seconds] : rows_) {
      rows.emplace_back(seconds / busy_, name);
    }
    std::sort(rows.rbegin(), rows.rend());
    rows.resize(std::min<std::size_t>(rows.size(), 5));
    for (const auto& [share, name] : rows) {
      std::printf("row %.3f %s\n", share, name.c_str());
    }
  }

 private:
  InstalledPlatform<LinuxKernel, SystemClock> machine_;
  VELCPUProcessesInfo processes_;
  double lastTime_ = machine_.clock.now();
  double lastBusy_ = busySeconds();
  // CPU seconds, except for the first.
  double elapsed_ = 0.0;
  double busy_ = 0.0;
  double all_ = 0.0;
  double five_ = 0.0;
  std::map<std::string, double> rows_;
};

void readFor(Coverage& coverage, int seconds) {
  SystemClock clock;
  for (double next = clock.now() + 1.0; seconds > 0; --seconds, next += 1.0) {
    clock.sleep(std::max(0.0, next - clock.now()));
    coverage.read();
  }
}

int run(int warmUp, int seconds) {
  Coverage coverage;
  readFor(coverage, warmUp);
  coverage.forget();
  std::puts("begin");
  std::fflush(stdout);
  readFor(coverage, seconds);
  coverage.print();
  return 0;
}

}  // namespace
}  // namespace vel::test

int main(int argc, char** argv) {
  const int warmUp = argc == 3 ? std::atoi(argv[1]) : 0;
  const int seconds = argc == 3 ? std::atoi(argv[2]) : 0;
  if (warmUp <= 0 || seconds <= 0) {
    std::fprintf(stderr, "usage: coverage_bench SECONDS-TO-WARM-UP SECONDS\n");
    return 2;
  }
  return vel::test::run(warmUp, seconds);
}
