// What reading all processes costs, beside a bare loop that reads every process's stat file once.
// Prints a table in Markdown.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Clock.h"
#include "platform/linux/DirectoryEntries.h"
#include "platform/linux/LinuxKernel.h"
#include "processes/VELCPUProcessesInfo.h"
#include "support/InstalledPlatform.h"

namespace vel::test {
namespace {

constexpr long kMillisecond = 1'000'000;

void waitFor(long nanoseconds) {
  const timespec time = {.tv_sec = nanoseconds / 1'000'000'000,
                         .tv_nsec = nanoseconds % 1'000'000'000};
  nanosleep(&time, nullptr);
}

double cpuMicroseconds() {
  timespec time = {};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) * 1e6 + static_cast<double>(time.tv_nsec) / 1e3;
}

double residentBytes() {
  std::ifstream file("/proc/self/smaps_rollup");
  for (std::string word; file >> word;) {
    if (double kibibytes = 0; word == "Rss:" && file >> kibibytes) {
      return kibibytes * 1024;
    }
  }
  std::fprintf(stderr, "processes: the resident memory cannot be read\n");
  std::exit(1);
}

[[noreturn]] void sleepForGood() {
  for (;;) {
    pause();
  }
}

[[noreturn]] void wakeTenTimesASecond() {
  for (;;) {
    waitFor(100 * kMillisecond);
  }
}

/// Starts 500 processes a second, each of which lives for a tenth of a second.
[[noreturn]] void comeAndGo() {
  for (;;) {
    if (fork() == 0) {
      waitFor(100 * kMillisecond);
      _exit(0);
    }
    waitFor(2 * kMillisecond);
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
  }
}

/// Child processes, which end with it, and with this process however that ends.
class Crowd {
 public:
  explicit Crowd(std::size_t most) { pids_.resize(most, -1); }
  ~Crowd() {
    for (const pid_t pid : pids_) {
      if (pid > 0) {
        kill(pid, SIGKILL);
        waitpid(pid, nullptr, 0);
      }
    }
  }
  Crowd(const Crowd&) = delete;
  Crowd& operator=(const Crowd&) = delete;

  void add(std::size_t count, void (*live)()) {
    const pid_t parent = getpid();
    for (; count > 0; --count) {
      const pid_t pid = fork();
      if (pid == 0) {
        prctl(PR_SET_PDEATHSIG, SIGKILL);
        if (getppid() == parent) {
          live();
        }
        _exit(0);
      }
      if (pid < 0) {
        std::perror("processes: fork");
        std::exit(1);
      }
      pids_.at(size_++) = pid;
    }
  }

 private:
  std::vector<pid_t> pids_;
  std::size_t size_ = 0;
};

class BareLoop {
 public:
  void read() {
    forEachEntry(proc_, buffer_, [this](const dirent64& /*entry*/, std::string_view name) {
      if (name.front() >= '1' && name.front() <= '9') {
        const int file = openat(proc_, (std::string(name) + "/stat").c_str(), O_RDONLY | O_CLOEXEC);
        if (file >= 0) {
          bytes_ += ::read(file, text_.data(), text_.size());
          ::close(file);
        }
      }
      return true;
    });
  }

 private:
  int proc_ = open("/proc", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  std::vector<char> buffer_ = std::vector<char>(std::size_t{32} * 1024);
  std::array<char, 4096> text_{};
  std::int64_t bytes_ = 0;
};

class TableAndFigures {
 public:
  void read() {
    kernel_.listProcesses(records_);
    for (auto record = records_.rbegin(); record != records_.rend(); ++record) {
      kernel_.process(record->pid);
      threads_ += kernel_.taskFigures(record->pid).value_or(TaskFigures{}).threads;
    }
  }
  [[nodiscard]] std::size_t size() const { return records_.size(); }

 private:
  LinuxKernel kernel_;
  std::vector<ProcessRecord> records_;
  std::int64_t threads_ = 0;
};

class Accounting {
 public:
  void read() { processes_.getAllProcessInfos(); }

 private:
  InstalledPlatform<LinuxKernel, SystemClock> machine_;
  VELCPUProcessesInfo processes_;
};

double median(std::vector<double> values) {
  std::nth_element(values.begin(), values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2),
                   values.end());
  return values[values.size() / 2];
}

struct Case {
  const char* name;
  std::size_t sleeping;
  std::size_t waking;
  bool churn;
};

/// The three are measured in turn, a second apart as in use, and each is first as often as last.
void measureTime(const Case& each, int rounds) {
  Crowd crowd(each.sleeping + each.waking + 1);
  crowd.add(each.sleeping, sleepForGood);
  crowd.add(each.waking, wakeTenTimesASecond);
  crowd.add(each.churn ? 1 : 0, comeAndGo);
  BareLoop bare;
  TableAndFigures table;
  Accounting accounting;
  const std::array<std::function<void()>, 3> readers = {
      [&bare] { bare.read(); }, [&table] { table.read(); }, [&accounting] { accounting.read(); }};
  std::array<std::vector<double>, 3> times;
  std::array<double, 3> first{};
  for (int round = -3; round < rounds; ++round) {
    for (std::size_t i = 0; i < readers.size(); ++i) {
      const std::size_t reader = (i + static_cast<std::size_t>(round + 3)) % readers.size();
      const double before = cpuMicroseconds();
      readers[reader]();
      const double used = cpuMicroseconds() - before;
      if (round >= 0) {
        times[reader].push_back(used);
      } else if (round == -3) {
        first[reader] = used;
      }
    }
    waitFor(1000 * kMillisecond);
  }
  const double base = median(times[0]);
  std::printf("| %s | %zu | %.0f | %.0f | %.2f | %.0f | %.2f | %.0f |\n", each.name, table.size(),
              base, median(times[1]), median(times[1]) / base, median(times[2]),
              median(times[2]) / base, first[1]);
  std::fflush(stdout);
}

void measureMemory() {
  constexpr std::size_t kMore = 5000;
  Crowd crowd(kMore + 200);
  crowd.add(200, sleepForGood);
  TableAndFigures table;
  Accounting accounting;
  const auto readTwice = [](auto& reader) {
    reader.read();
    reader.read();
    return residentBytes();
  };
  readTwice(table);
  readTwice(accounting);
  crowd.add(kMore, sleepForGood);
  // First of all, lest it is served from memory that an earlier measurement has freed.
  const double before = residentBytes();
  const double withTable = readTwice(table);
  const double withBoth = readTwice(accounting);
  std::printf(
      "Memory for each of %zu more processes: the table %.0f bytes, "
      "the accounting with a table of its own %.0f bytes\n\n",
      kMore, (withTable - before) / kMore, (withBoth - withTable) / kMore);
}

}  // namespace
}  // namespace vel::test

int main(int argc, char** argv) {
  const int rounds = argc > 1 ? std::atoi(argv[1]) : 15;
  if (rounds <= 0) {
    std::fprintf(stderr, "processes: \"%s\" is no number of rounds\n", argv[1]);
    return 2;
  }
  vel::test::measureMemory();
  std::printf(
      "CPU time of one reading in microseconds, the median of %d readings a second apart; the "
      "ratios are to the bare loop\n\n"
      "| beside the system's own | processes | bare loop | table and figures | ratio | accounting "
      "| "
      "ratio | first table |\n"
      "|---|---:|---:|---:|---:|---:|---:|---:|\n",
      rounds);
  std::fflush(stdout);
  for (const vel::test::Case& each :
       {vel::test::Case{"200 sleeping", 200, 0, false},
        vel::test::Case{"1000 sleeping", 1000, 0, false},
        vel::test::Case{"5000 sleeping", 5000, 0, false},
        vel::test::Case{"300 sleeping, 40 waking 10 times a second", 300, 40, false},
        vel::test::Case{"1000 sleeping, 500 a second come and go", 1000, 0, true}}) {
    vel::test::measureTime(each, rounds);
  }
  return 0;
}
