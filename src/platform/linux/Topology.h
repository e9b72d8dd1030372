// Which processors share a core, and the order that makes them neighbours.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vel {

/// What tells one core from another.
struct CoreIdentity {
  std::int32_t package = 0;
  std::int32_t core = 0;
  /// The lowest-numbered online processor of the core, or -1 where the kernel does not say. Needed
  /// because on Arm `core` is unique only within a cluster.
  std::int32_t firstSibling = -1;

  bool operator==(const CoreIdentity&) const = default;
};

struct PlacedProcessor {
  std::int32_t cpu = 0;
  std::optional<CoreIdentity> core;  ///< nothing for one that is offline
};

struct Topology {
  /// Every processor's number: by package, core and thread, then the offline ones.
  std::vector<std::int32_t> order;
  /// Of those of the order that are online, which is its front: the ordinal of the core.
  std::vector<std::int32_t> cores;
  std::uint32_t onlineCores = 0;
};

Topology arrangeProcessors(std::vector<PlacedProcessor> processors);

/// Reads the one number of a file such as topology/core_id, negative where the firmware does not
/// tell.
std::optional<std::int32_t> parseTopologyId(std::string_view text);

}  // namespace vel
