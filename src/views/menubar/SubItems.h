// The bits of "VEL_CPU_IconSubItemsChanged": which parts of the menu-bar item are shown.
#pragma once

#include <cstdint>

namespace vel::subItem {

inline constexpr std::int64_t percentage = 1;
inline constexpr std::int64_t gauge = 2;
inline constexpr std::int64_t moduleName = 4;

}  // namespace vel::subItem
