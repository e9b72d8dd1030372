#include "host/terminal/RunningProcessors.h"

#include <algorithm>

namespace vel {

const std::vector<RunningProcessor>& RunningProcessors::ofThisRefresh() {
  current_ = next_;
  const auto count = kernel_.logicalProcessorCount();
  if (count != count_) {
    count_ = count;
    read();
    // The module leaves the sample out in which the number of processors has changed: its record is
    // still in the old order.
    if (current_.empty()) {
      current_ = next_;
    }
  }
  return current_;
}

void RunningProcessors::read() {
  TickSample sample;
  std::vector<ProcessorState> states;
  next_.clear();
  if (kernel_.readTicks(sample) && kernel_.readProcessorStates(states)) {
    for (std::size_t i = 0; i < std::min(states.size(), sample.processors.size()); ++i) {
      if (states[i].running) {
        next_.push_back({sample.processors[i], static_cast<std::uint32_t>(next_.size())});
      }
    }
    std::ranges::sort(next_, {}, &RunningProcessor::number);
  } else {
    for (std::uint32_t i = 0; i < count_.value_or(0); ++i) {
      next_.push_back({static_cast<std::int32_t>(i), i});
    }
  }
}

}  // namespace vel
