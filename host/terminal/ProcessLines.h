// The list of processes on the display.
#pragma once

#include <vector>

#include "host/terminal/Labels.h"
#include "host/terminal/Line.h"
#include "host/terminal/ProcessList.h"

namespace vel {

/// A heading and a line for each row, their columns aligned; at most `columns` wide. Where that is
/// little, first the number of processes in the row is left out, then a name ends in an ellipsis,
/// then the pid is left out.
std::vector<Line> processLines(const ProcessList& processes, const Labels& labels, int columns);

}  // namespace vel
