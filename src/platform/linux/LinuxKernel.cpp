// The kernel's figures from procfs and sysfs.
#include "platform/linux/LinuxKernel.h"

#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <ctime>
#include <limits>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/ProcLoadavg.h"
#include "platform/linux/ProcStat.h"

namespace vel {

namespace {

/// A list file that is missing or malformed and one that lists nothing are alike: nothing can be
/// told from it.
bool readList(TextFile& file, CpuList& cpus) {
  const std::optional<std::string_view> text = file.read();
  return text && cpus.parse(*text);
}

std::optional<std::int32_t> readId(const std::filesystem::path& path) {
  TextFile file(path);
  const std::optional<std::string_view> text = file.read();
  return text ? parseTopologyId(*text) : std::nullopt;
}

std::optional<std::int32_t> readFirst(const std::filesystem::path& path) {
  TextFile file(path);
  CpuList siblings;
  return readList(file, siblings) ? std::optional(siblings.first()) : std::nullopt;
}

}  // namespace

LinuxKernel::LinuxKernel(const std::filesystem::path& proc, const std::filesystem::path& sys)
    : cpuDirectory_(sys / "devices/system/cpu"),
      statFile_(proc / "stat"),
      loadavgFile_(proc / "loadavg"),
      presentFile_(cpuDirectory_ / "present"),
      processes_(proc),
      processDirectory_(proc),
      processReader_(processDirectory_) {}

std::optional<std::uint32_t> LinuxKernel::processorCount() {
  readStat();
  if (counters_.cpus().empty()) {
    return std::nullopt;
  }
  if (CpuList present = readPresent(); present != present_ || online_ != counters_.cpus()) {
    makeOrder(std::move(present));
  }
  return present_.count();
}

std::optional<std::uint32_t> LinuxKernel::physicalCoreCount() {
  if (!hasLines()) {
    return std::nullopt;
  }
  makeOrder(readPresent());
  return topology_.onlineCores;
}

std::optional<std::uint32_t> LinuxKernel::logicalProcessorCount() {
  return hasLines() ? std::optional(counters_.cpus().count()) : std::nullopt;
}

bool LinuxKernel::readTicks(TickSample& sample) {
  if (!readStat() || !ensureOrder()) {
    return false;
  }
  sample.processors.assign(topology_.order.size(), TickSample::kNoProcessor);
  sample.counters.assign(topology_.order.size() * TickSample::kStates, 0);
  for (const TickCounters::Processor& processor : counters_.processors()) {
    const std::size_t position = positions_[static_cast<std::size_t>(processor.line.cpu)];
    sample.processors[position] = processor.line.cpu;
    std::copy(processor.counters.begin(), processor.counters.end(),
              &sample.counters[position * TickSample::kStates]);
  }
  return true;
}

bool LinuxKernel::readStat() {
  statRead_ = statFile_.read() && counters_.read(statFile_.text());
  return statRead_;
}

bool LinuxKernel::readProcessorStates(std::vector<ProcessorState>& states) {
  if (!ensureOrder()) {
    return false;
  }
  states.assign(topology_.order.size(), ProcessorState{});
  for (std::size_t i = 0; i < topology_.cores.size(); ++i) {
    states[i] = {.running = true, .core = topology_.cores[i], .identity = topology_.order[i]};
  }
  return true;
}

std::optional<SystemLoad> LinuxKernel::systemLoad() {
  const std::optional<std::string_view> text = loadavgFile_.read();
  const std::optional<std::int32_t> threads = text ? parseThreadCount(*text) : std::nullopt;
  const std::optional<std::int32_t> tasks = processes_.read();
  if (!threads || !tasks) {
    return std::nullopt;
  }
  return SystemLoad{.tasks = *tasks, .threads = *threads};
}

int LinuxKernel::loadAverages(std::array<double, 3>& averages) {
  const std::optional<std::string_view> text = loadavgFile_.read();
  return text ? parseLoadAverages(*text, averages) : -1;
}

std::optional<BootTime> LinuxKernel::bootTime() {
  if (bootTime_) {
    return bootTime_;
  }
  if (!statRead_ && !statFile_.read()) {
    return std::nullopt;
  }
  const std::optional<std::int64_t> seconds = parseBootTime(statFile_.text());
  if (!seconds) {
    return std::nullopt;
  }
  statRead_ = true;
  bootTime_ = BootTime{.seconds = *seconds, .microseconds = 0};
  return bootTime_;
}

bool LinuxKernel::listProcesses(std::vector<ProcessRecord>& records) {
  const std::optional<ReadingTime> time = readingTime();
  if (!time || !processReader_.read(*time)) {
    return false;
  }
  processReader_.copyTo(records);
  return true;
}

/// On a captured tree no process is young.
std::optional<ReadingTime> LinuxKernel::readingTime() {
  const std::optional<BootTime> boot = bootTime();
  if (!boot) {
    return std::nullopt;
  }
  ReadingTime time{.bootSeconds = boot->seconds,
                   .ticksSinceBoot = std::numeric_limits<std::uint64_t>::max()};
  timespec sinceBoot = {};
  if (processDirectory_.onProcfs() && ::clock_gettime(CLOCK_BOOTTIME, &sinceBoot) == 0) {
    const std::int64_t ticks = ::sysconf(_SC_CLK_TCK);
    time.ticksSinceBoot = static_cast<std::uint64_t>(sinceBoot.tv_sec * ticks +
                                                     sinceBoot.tv_nsec * ticks / 1'000'000'000);
  }
  return time;
}

std::optional<ProcessRecord> LinuxKernel::process(std::int32_t pid) {
  return processReader_.record(pid, [this] { return readingTime(); });
}

std::optional<TaskFigures> LinuxKernel::taskFigures(std::int32_t pid) {
  return processReader_.figures(pid);
}

std::optional<std::string> LinuxKernel::processName(std::int32_t pid) {
  return processReader_.applicationName(pid);
}

std::vector<ApplicationProcess> LinuxKernel::application(std::int32_t pid) {
  if (const std::optional<ReadingTime> time = readingTime()) {
    processReader_.read(*time);
  }
  return processReader_.application(pid);
}

std::int32_t LinuxKernel::ownPid() {
  return ::getpid();
}

std::optional<std::string> LinuxKernel::executablePath(std::int32_t pid) {
  return processDirectory_.executablePath(pid);
}

bool LinuxKernel::hasLines() {
  return !counters_.cpus().empty() || readStat();
}

CpuList LinuxKernel::readPresent() {
  CpuList present;
  return readList(presentFile_, present) && present.containsAll(counters_.cpus())
             ? present
             : counters_.cpus();
}

bool LinuxKernel::ensureOrder() {
  if (!hasLines()) {
    return false;
  }
  if (online_ != counters_.cpus()) {
    makeOrder(readPresent());
  }
  return true;
}

void LinuxKernel::makeOrder(CpuList present) {
  present_ = std::move(present);
  online_ = counters_.cpus();
  std::vector<PlacedProcessor> processors;
  processors.reserve(present_.count());
  present_.forEach([this, &processors](std::int32_t cpu) {
    const bool online = online_.contains(cpu);
    processors.push_back(
        {.cpu = cpu, .core = online ? std::optional(readCore(cpu)) : std::nullopt});
  });
  topology_ = arrangeProcessors(std::move(processors));
  positions_.assign(static_cast<std::size_t>(online_.last()) + 1, 0);
  for (std::size_t i = 0; i < topology_.cores.size(); ++i) {
    positions_[static_cast<std::size_t>(topology_.order[i])] = i;
  }
}

/// From the files of Documentation/admin-guide/cputopology.rst. thread_siblings_list is the older
/// name of core_cpus_list. A virtual machine may have none of them: then each processor is a core
/// of its own.
CoreIdentity LinuxKernel::readCore(std::int32_t cpu) const {
  const std::filesystem::path directory =
      cpuDirectory_ / ("cpu" + std::to_string(cpu)) / "topology";
  const std::optional<std::int32_t> package = readId(directory / "physical_package_id");
  const std::optional<std::int32_t> core = readId(directory / "core_id");
  if (!package || !core) {
    return {.package = 0, .core = cpu, .firstSibling = cpu};
  }
  std::optional<std::int32_t> first = readFirst(directory / "core_cpus_list");
  if (!first) {
    first = readFirst(directory / "thread_siblings_list");
  }
  return {.package = *package, .core = *core, .firstSibling = first.value_or(-1)};
}

}  // namespace vel
