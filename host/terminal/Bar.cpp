#include "host/terminal/Bar.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <string_view>

namespace vel {
namespace {

/// Indexed by the number of filled eighths, less one.
constexpr std::wstring_view kPartialBlocks = L"▏▎▍▌▋▊▉";
constexpr int kEighths = 8;

}  // namespace

Bar::Bar(float share, int columns, bool blocks) {
  const int steps = blocks ? kEighths : 1;
  const auto filledSteps = static_cast<int>(
      std::lround(std::clamp(share, 0.0F, 1.0F) * static_cast<float>(columns * steps)));
  filled.assign(static_cast<std::size_t>(filledSteps / steps), blocks ? L'█' : L'#');
  if (filledSteps % steps != 0) {
    filled += kPartialBlocks[static_cast<std::size_t>(filledSteps % steps - 1)];
  }
  track.assign(static_cast<std::size_t>(columns) - filled.size(), blocks ? L'·' : L'.');
}

}  // namespace vel
