// What the user types at the display.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace vel {

enum class Key : std::uint8_t {
  quit,
  ranking,
  cores,
  graph,
  gpu,
  gpuAlert,
  alert,
  lowerThreshold,
  higherThreshold,
  shorterDuration,
  longerDuration,
  dismiss,
  up,
  down,
  escape,
  end,
  yes,
  force,
  help,
  other
};

/// Reads what waits on the terminal `descriptor`, which may be nothing. Without a result the
/// terminal has been closed.
std::optional<std::vector<Key>> readKeys(int descriptor);

/// The keys whose bytes these are. A letter is the same key as its capital; the letters in a
/// function key's bytes are none. Escape is told from a function key by what comes with it.
std::vector<Key> keysOf(std::string_view bytes);

}  // namespace vel
