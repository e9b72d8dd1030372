// Upright gauges side by side, one column each.
#pragma once

#include <span>

#include "host/terminal/Item.h"
#include "host/terminal/Line.h"

namespace vel {

/// At most `columns` wide: where there are more gauges, neighbours share a column, which shows the
/// highest. With block characters exact to an eighth, else in as many characters from light to
/// heavy.
Line gaugeRow(std::span<const Item::Gauge> gauges, int columns, bool blocks);

}  // namespace vel
