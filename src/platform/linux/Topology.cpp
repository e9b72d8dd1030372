// Which processors share a core, and the order that makes them neighbours.
#include "platform/linux/Topology.h"

#include <algorithm>
#include <tuple>

#include "platform/linux/Scan.h"

namespace vel {

Topology arrangeProcessors(std::vector<PlacedProcessor> processors) {
  const auto key = [](const PlacedProcessor& processor) {
    const CoreIdentity core = processor.core.value_or(CoreIdentity{});
    return std::tuple(!processor.core, core.package, core.core, core.firstSibling, processor.cpu);
  };
  std::sort(processors.begin(), processors.end(),
            [key](const PlacedProcessor& a, const PlacedProcessor& b) { return key(a) < key(b); });
  Topology topology;
  topology.order.reserve(processors.size());
  std::optional<CoreIdentity> previous;
  for (const PlacedProcessor& processor : processors) {
    topology.order.push_back(processor.cpu);
    if (!processor.core) {
      continue;
    }
    if (processor.core != previous) {
      ++topology.onlineCores;
      previous = processor.core;
    }
    topology.cores.push_back(static_cast<std::int32_t>(topology.onlineCores) - 1);
  }
  return topology;
}

std::optional<std::int32_t> parseTopologyId(std::string_view text) {
  std::optional<std::string_view> line = onlyLine(text);
  std::int32_t id = 0;
  if (!line || !takeInteger(*line, id) || !line->empty()) {
    return std::nullopt;
  }
  return id;
}

}  // namespace vel
