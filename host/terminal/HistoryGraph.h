// The load over time, drawn with characters.
#pragma once

#include <vector>

#include "host/terminal/Line.h"
#include "platform/host/VELGraphMultiple.h"

namespace vel {

/// At most `rows` lines, each at most `columns` wide; both are at least 1. Every value has a
/// column, the latest at the right, exact to an eighth of a row. One series fills all of it;
/// several have a cell each, filled from top to bottom and then from left to right. Series that are
/// too many share a cell with their neighbours, which shows the highest.
std::vector<Line> historyGraph(const VELGraphMultiple& graph, int columns, int rows, bool blocks);

}  // namespace vel
