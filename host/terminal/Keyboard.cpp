#include "host/terminal/Keyboard.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

namespace vel {
namespace {

/// How many bytes at the front of `keys` belong together: one, or the sequence that a function key
/// or Alt sends (ECMA-48, 5.4: "ESC [", parameters below "@", one final byte).
std::size_t lengthOfKey(std::string_view keys) {
  if (!keys.starts_with('\x1b')) {
    return 1;
  }
  if (keys.starts_with("\x1b[")) {
    const auto* const end =
        std::find_if(keys.begin() + 2, keys.end(), [](char byte) { return byte >= '@'; });
    return std::min(keys.size(), static_cast<std::size_t>(end - keys.begin()) + 1);
  }
  return std::min(keys.size(), std::size_t{keys.starts_with("\x1bO") ? 3U : 2U});
}

}  // namespace

bool asksToQuit(std::string_view keys) {
  for (; !keys.empty(); keys.remove_prefix(lengthOfKey(keys))) {
    if (keys.front() == 'q' || keys.front() == 'Q') {
      return true;
    }
  }
  return false;
}

bool readsEnd(int descriptor) {
  std::array<char, 64> bytes{};
  const ssize_t size = read(descriptor, bytes.data(), bytes.size());
  if (size > 0) {
    return asksToQuit({bytes.data(), static_cast<std::size_t>(size)});
  }
  return size == 0 || (errno != EINTR && errno != EAGAIN);
}

}  // namespace vel
