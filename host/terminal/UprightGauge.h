// Upright gauges made of characters.
#pragma once

namespace vel {

/// The steps from an empty to a full character.
inline constexpr int kUprightSteps = 8;

/// The character filled from its bottom to `steps`, which is from 0 to `kUprightSteps`: a block, or
/// in ASCII a character from light to heavy.
wchar_t uprightGauge(int steps, bool blocks);

}  // namespace vel
