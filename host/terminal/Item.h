// What the module's menu-bar item shows, read from its headless views.
#pragma once

#include <string>
#include <vector>

#include "platform/windowing/View.h"

namespace vel {

/// Pieces of a kind are in the order in which they stand, from left to right.
struct Item {
  struct Gauge {
    float share = 0.0F;  ///< held to 0 to 1
    bool busy = false;   ///< in red
  };

  std::string name;
  std::string text;
  std::vector<Gauge> gauges;
  std::string badge{};

  [[nodiscard]] bool isEmpty() const {
    return name.empty() && text.empty() && gauges.empty() && badge.empty();
  }

  /// Overwrites everything. Hidden views, with all that is inside them, are left out, as are those
  /// that are neither a text nor a name nor gauges and draw no text, which makes a badge. Without a
  /// view the item is empty.
  void read(View* view);
};

}  // namespace vel
