// The processors of /proc/stat, and what their counters have counted.
#include "platform/linux/TickCounters.h"

#include <cstddef>
#include <limits>
#include <utility>

namespace vel {

namespace {

/// Of each column.
constexpr std::array<TickSample::State, CpuLine::kColumns> kStates = {
    TickSample::user, TickSample::nice,   TickSample::system, TickSample::idle,
    TickSample::idle, TickSample::system, TickSample::system, TickSample::system};

/// In unsigned arithmetic: a step back is a number just below 2^64.
std::uint64_t gained(std::uint64_t from, std::uint64_t to) {
  constexpr auto kMost32 = std::numeric_limits<std::uint32_t>::max();
  const bool mayWrapAt32 = from <= kMost32 && to <= kMost32;
  return mayWrapAt32 ? static_cast<std::uint64_t>(std::int64_t{
                           static_cast<std::int32_t>(static_cast<std::uint32_t>(to - from))})
                     : to - from;
}

}  // namespace

bool TickCounters::read(std::string_view stat) {
  std::size_t lines = 0;
  bool same = true;
  const bool sound = forEachCpu(stat, [this, &lines, &same](const CpuLine& line) {
    if (lines < processors_.size() && processors_[lines].line.cpu == line.cpu) {
      follow(processors_[lines], line);
    } else {
      same = false;
    }
    ++lines;
  });
  if (sound && !(same && lines == processors_.size())) {
    readOthers(stat);
  }
  return sound;
}

void TickCounters::readOthers(std::string_view stat) {
  std::vector<Processor> others;
  cpus_.clear();
  forEachCpu(stat, [this, &others, before = processors_.cbegin()](const CpuLine& line) mutable {
    while (before != processors_.cend() && before->line.cpu < line.cpu) {
      ++before;
    }
    if (before != processors_.cend() && before->line.cpu == line.cpu) {
      follow(others.emplace_back(*before), line);
    } else {
      begin(others.emplace_back(), line);
    }
    cpus_.append(line.cpu);
  });
  processors_ = std::move(others);
}

void TickCounters::begin(Processor& processor, const CpuLine& line) {
  processor.line = line;
  for (std::size_t i = 0; i < CpuLine::kColumns; ++i) {
    processor.counters[kStates[i]] += line.ticks[i];
  }
}

void TickCounters::follow(Processor& processor, const CpuLine& line) {
  for (std::size_t i = 0; i < CpuLine::kColumns; ++i) {
    processor.counters[kStates[i]] += gained(processor.line.ticks[i], line.ticks[i]);
  }
  processor.line = line;
}

}  // namespace vel
