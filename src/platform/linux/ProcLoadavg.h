// The text of /proc/loadavg: "0.20 0.18 0.12 1/80 11206" (man 5 proc).
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string_view>

namespace vel {

/// The averages over 1, 5 and 15 minutes. Returns how many there were, from the front, or -1 for
/// none.
int parseLoadAverages(std::string_view text, std::array<double, 3>& averages);

/// Threads of the whole system: the number after the slash.
std::optional<std::int32_t> parseThreadCount(std::string_view text);

}  // namespace vel
