// The look that the user wants.
#pragma once

#include <cstdint>

namespace vel {

enum class Appearance : std::uint8_t { followDesktop = 0, light = 1, dark = 2 };

}  // namespace vel
