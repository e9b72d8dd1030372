// A horizontal gauge made of characters.
#pragma once

#include <string>

namespace vel {

struct Bar {
  /// Fills `columns` in proportion to `share`, which is held to 0 to 1; with block characters to an
  /// eighth of a column.
  Bar(float share, int columns, bool blocks);

  std::wstring filled;
  std::wstring track;
};

}  // namespace vel
