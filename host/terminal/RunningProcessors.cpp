#include "host/terminal/RunningProcessors.h"

#include <algorithm>

namespace vel {

const std::vector<RunningProcessor>& RunningProcessors::ofThisRefresh() {
  const std::size_t before = latest_.size();
  read();
  // The module leaves the sample out in which the number of processors has changed: its record is
  // still of those before.
  if (latest_.size() == before || current_.empty()) {
    current_ = latest_;
  }
  return current_;
}

void RunningProcessors::read() {
  latest_.clear();
  if (!kernel_.readProcessorStates(states_)) {
    return;
  }
  for (const ProcessorState& state : states_) {
    if (state.running) {
      latest_.push_back({state.identity, static_cast<std::uint32_t>(latest_.size())});
    }
  }
  std::ranges::sort(latest_, {}, &RunningProcessor::number);
}

}  // namespace vel
