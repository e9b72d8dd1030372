#include "host/terminal/Line.h"

#include <numeric>

#include "host/terminal/Text.h"

namespace vel {

int widthOf(const Line& line) {
  return std::accumulate(line.begin(), line.end(), 0,
                         [](int width, const Span& span) { return width + widthOf(span.text); });
}

void clip(Line& line, int columns) {
  for (Span& span : line) {
    span.text = clipped(span.text, columns);
    columns -= widthOf(span.text);
  }
}

void append(Line& line, wchar_t character, Tone tone) {
  if (line.empty() || line.back().tone != tone) {
    line.push_back({{}, tone});
  }
  line.back().text += character;
}

}  // namespace vel
