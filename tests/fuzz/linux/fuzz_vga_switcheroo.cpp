// The kernel's switch: each client found is one line, which tells the same when it stands alone,
// and only the first integrated one is.
#include <utility>

#include "fuzz/Fuzzing.h"
#include "platform/linux/graphics/VgaSwitcheroo.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = vel::fuzz::textOf(data, size);
  vel::SwitchClients byLine;
  bool integrated = false;
  for (std::size_t start = 0, end = 0; (end = text.find('\n', start)) != std::string::npos;
       start = end + 1) {
    const auto alone = vel::parseSwitchClients(text.substr(start, end + 1 - start));
    vel::fuzz::require(alone.size() <= 1);
    if (!alone.empty() && (alone.front().discrete || !std::exchange(integrated, true))) {
      byLine.push_back(alone.front());
    }
  }
  vel::fuzz::require(vel::parseSwitchClients(text) == byLine);
  return 0;
}
