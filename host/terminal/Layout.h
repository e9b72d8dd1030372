// What stands where on the display.
#pragma once

#include <vector>

#include "host/terminal/Content.h"
#include "host/terminal/HelpPage.h"
#include "host/terminal/Labels.h"
#include "host/terminal/Line.h"
#include "platform/foundation/Locale.h"

namespace vel {

struct LayoutSize {
  int columns = 0;
  int rows = 0;
};

struct LayoutStyle {
  bool blocks = false;               ///< gauges of block characters, else of ASCII
  std::vector<KeyDescription> keys;  ///< hints in a last line, at the bottom; none without any
};

struct Page {
  std::vector<Line> lines;
  bool hasProcesses = false;  ///< the list has a place, though it may be empty
};

/// At most `size.rows` lines, each at most `size.columns` wide, for any size. What does not fit is
/// left out, the item last of all and an alert just before it; processors that are too many for a
/// gauge each share one with their neighbours, which shows their mean. Where the item has more
/// gauges than there are columns, neighbours share one, which shows the highest. An empty item has
/// no line. The list of processes and the graph are shown where they do not crowd out the rest. A
/// prompt covers the first lines, so that nothing moves.
Page layOut(const Content& content, const Labels& labels, const Locale& locale, LayoutSize size,
            const LayoutStyle& style);

}  // namespace vel
