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
  busy,       ///< a share above the threshold, number and gauge; an alert
  chosen,     ///< the row of the list that the keys are about
};

struct Span {
  std::wstring text;
  Tone tone = Tone::normal;
};

using Line = std::vector<Span>;

/// Columns between two columns of figures or gauges.
inline constexpr int kGap = 2;

/// In columns.
int widthOf(const Line& line);

/// Cuts off what does not fit.
void clip(Line& line, int columns);

/// Appends to the last piece of text if it has the same tone.
void append(Line& line, wchar_t character, Tone tone);

}  // namespace vel
