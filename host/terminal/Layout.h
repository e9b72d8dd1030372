// What stands where on the display.
#pragma once

#include <vector>

#include "host/terminal/Labels.h"
#include "host/terminal/Line.h"
#include "host/terminal/Readings.h"
#include "platform/foundation/Locale.h"

namespace vel {

struct LayoutSize {
  int columns = 0;
  int rows = 0;
};

struct LayoutStyle {
  bool blocks = false;    ///< gauges of block characters, else of ASCII
  bool keyHints = false;  ///< with a last line, at the bottom, of what the keys do
};

/// At most `size.rows` lines, each at most `size.columns` wide, for any size. What does not fit is
/// left out, the total last of all; processors that are too many for a gauge each share one with
/// their neighbours, which shows their mean.
std::vector<Line> layOut(const Readings& readings, const Labels& labels, const Locale& locale,
                         LayoutSize size, LayoutStyle style);

}  // namespace vel
