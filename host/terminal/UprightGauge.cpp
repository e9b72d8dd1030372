#include "host/terminal/UprightGauge.h"

#include <cstddef>
#include <string_view>

namespace vel {
namespace {

// Indexed by the number of filled steps.
constexpr std::wstring_view kBlocks = L"·▁▂▃▄▅▆▇█";
constexpr std::wstring_view kAscii = L".:-=+*#%@";

}  // namespace

wchar_t uprightGauge(int steps, bool blocks) {
  return (blocks ? kBlocks : kAscii)[static_cast<std::size_t>(steps)];
}

}  // namespace vel
