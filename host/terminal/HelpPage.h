// What the keys do.
#pragma once

#include <string>
#include <vector>

#include "host/terminal/Labels.h"
#include "host/terminal/Line.h"
#include "host/terminal/ModuleControls.h"

namespace vel {

/// A key that does something.
struct KeyDescription {
  std::wstring key;
  std::wstring word;  ///< for a line of hints, empty where the key is not in it
  std::wstring explanation;
};

/// Those that quit and help are the first and the last.
std::vector<KeyDescription> describeKeys(const ModuleControls& controls, const Labels& labels);

/// At most `columns` by `rows`. Explanations that are too long take further rows if all do fit.
std::vector<Line> helpPage(const std::vector<KeyDescription>& keys, const Labels& labels,
                           int columns, int rows);

}  // namespace vel
