// The list of processes on the display.
#pragma once

#include <vector>

#include "host/terminal/Labels.h"
#include "host/terminal/Line.h"
#include "host/terminal/ProcessList.h"

namespace vel {

/// A heading and a line for each process, their columns aligned; at most `columns` wide, where the
/// pid is left out first.
std::vector<Line> processLines(const ProcessList& processes, const Labels& labels, int columns);

}  // namespace vel
