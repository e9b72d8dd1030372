// A row of the ranking by memory.
#pragma once

#include <string>

namespace vel {

/// Every text is there; what is not known is "-". A name is a stranger's text: any bytes but NUL.
struct MemoryEntry {
  std::string name;
  std::string pid;       ///< decimal
  std::string realSize;  ///< resident memory with its unit, as it is shown
};

}  // namespace vel
