// What a display shows, before it is known how it is painted.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vel {

/// What a piece of text means; the painter chooses the colours.
enum class Tone : std::uint8_t {
  normal,
  strong,
  faint,
  gauge,      ///< the filled part of a gauge
  gaugeIdle,  ///< the same of a gauge that is good when full
  busy,       ///< a share above the threshold, number and gauge
};

struct Span {
  std::wstring text;
  Tone tone = Tone::normal;
};

using Line = std::vector<Span>;

}  // namespace vel
