// What stands where on the display.
#pragma once

#include <vector>

#include "host/terminal/Item.h"
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
/// left out, the item last of all; processors that are too many for a gauge each share one with
/// their neighbours, which shows their mean. Where the item has more gauges than there are columns,
/// neighbours share one, which shows the highest. An empty item has no line.
std::vector<Line> layOut(const Item& item, const Readings& readings, const Labels& labels,
                         const Locale& locale, LayoutSize size, LayoutStyle style);

}  // namespace vel
