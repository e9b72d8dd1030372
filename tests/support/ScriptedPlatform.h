// A machine that does what the test says: scripted readings and a clock that is moved by hand.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "support/InstalledPlatform.h"

namespace vel::test {

class ScriptedKernel : public Kernel {
 public:
  struct Processor {
    std::int64_t user = 0;
    std::int64_t system = 0;
    std::int64_t idle = 0;
    std::int64_t nice = 0;
    bool running = true;
    std::int32_t core = ProcessorState::kNoCore;
  };

  std::optional<std::uint32_t> processorCount() override { return count; }
  std::optional<std::uint32_t> physicalCoreCount() override { return physical; }
  std::optional<std::uint32_t> logicalProcessorCount() override { return logical; }

  bool readTicks(TickSample& sample) override {
    ++tickReadings;
    sample.counters.clear();
    sample.processors.clear();
    for (std::int32_t i = 0; const auto& processor : processors) {
      for (const auto ticks : {processor.user, processor.system, processor.idle, processor.nice}) {
        sample.counters.push_back(static_cast<std::uint64_t>(ticks));
      }
      sample.processors.push_back(identityAt(i++));
    }
    return ticksReadable;
  }

  bool readProcessorStates(std::vector<ProcessorState>& states) override {
    states.clear();
    for (std::int32_t i = 0; const auto& processor : processors) {
      states.push_back({processor.running, processor.core, identityAt(i++)});
    }
    return statesReadable;
  }

  std::optional<SystemLoad> systemLoad() override { return load; }

  int loadAverages(std::array<double, 3>& result) override {
    result = averages;
    return averagesDelivered;
  }

  std::optional<BootTime> bootTime() override { return boot; }

  struct Process {
    ProcessRecord record;
    std::optional<TaskFigures> figures;
    /// What a query for this one alone finds as its parent; the record's if nothing is set.
    std::optional<std::int32_t> parentNow;
    bool gone = false;  ///< ended after it was listed
  };

  bool listProcesses(std::vector<ProcessRecord>& records) override {
    records.clear();
    for (const auto& [pid, process] : processes) {
      records.push_back(process.record);
    }
    return processesListable;
  }
  std::optional<std::string> processName(std::int32_t pid) override {
    const std::optional<ProcessRecord> record = process(pid);
    return record ? std::optional(std::string(record->name())) : std::nullopt;
  }
  std::optional<ProcessRecord> process(std::int32_t pid) override {
    if (!processes.contains(pid) || processes[pid].gone) {
      return std::nullopt;
    }
    ProcessRecord record = processes[pid].record;
    record.parent = processes[pid].parentNow.value_or(record.parent);
    return record;
  }
  std::optional<TaskFigures> taskFigures(std::int32_t pid) override {
    return process(pid) ? processes[pid].figures : std::nullopt;
  }
  std::int32_t ownPid() override { return own; }
  std::optional<std::string> executablePath(std::int32_t pid) override {
    const auto found = executables.find(pid);
    return found == executables.end() ? std::nullopt : std::optional(found->second);
  }

  std::optional<std::uint32_t> count;
  std::optional<std::uint32_t> physical;
  std::optional<std::uint32_t> logical;
  std::vector<Processor> processors;
  std::vector<std::int32_t> identities;  ///< of `processors`; empty: 0, 1, 2, …
  bool ticksReadable = true;
  bool statesReadable = true;
  std::optional<SystemLoad> load;
  std::array<double, 3> averages{};
  int averagesDelivered = -1;
  std::optional<BootTime> boot;
  int tickReadings = 0;
  std::map<std::int32_t, Process> processes;
  bool processesListable = true;
  std::int32_t own = -1;
  std::map<std::int32_t, std::string> executables;

 private:
  [[nodiscard]] std::int32_t identityAt(std::int32_t i) const {
    return identities.empty() ? i : identities.at(static_cast<unsigned>(i));
  }
};

class ManualClock : public Clock {
 public:
  [[nodiscard]] double now() const override { return seconds; }
  void sleep(double duration) override { seconds += duration; }

  std::atomic<double> seconds = 1'700'000'000.0;
};

using ScriptedPlatform = InstalledPlatform<ScriptedKernel, ManualClock>;

}  // namespace vel::test
