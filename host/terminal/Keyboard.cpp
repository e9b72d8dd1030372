#include "host/terminal/Keyboard.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>

namespace vel {
namespace {

/// As much as a terminal holds for its reader (man 3 termios), so that no key is cut in two.
constexpr std::size_t kMostBytes = 4096;

/// How many bytes at the front of `keys` belong together: one, or the sequence that a function key
/// or Alt sends (ECMA-48, 5.4: "ESC [", parameters below "@", one final byte).
std::size_t lengthOfKey(std::string_view keys) {
  if (!keys.starts_with('\x1b')) {
    return 1;
  }
  if (keys.starts_with("\x1b\x1b[") || keys.starts_with("\x1b\x1bO")) {
    // A function key with Alt.
    return 1 + lengthOfKey(keys.substr(1));
  }
  if (keys.starts_with("\x1b[[")) {
    // The Linux console's F1 to F5.
    return std::min(keys.size(), std::size_t{4});
  }
  if (keys.starts_with("\x1b[")) {
    const auto* const end =
        std::find_if(keys.begin() + 2, keys.end(), [](char byte) { return byte >= '@'; });
    return std::min(keys.size(), static_cast<std::size_t>(end - keys.begin()) + 1);
  }
  return std::min(keys.size(), std::size_t{keys.starts_with("\x1bO") ? 3U : 2U});
}

Key keyOf(char byte) {
  switch (byte) {
    case 'q':
    case 'Q':
      return Key::quit;
    case 't':
    case 'T':
      return Key::ranking;
    case 'c':
    case 'C':
      return Key::cores;
    case 'g':
    case 'G':
      return Key::graph;
    case 'v':
    case 'V':
      return Key::gpu;
    case 'n':
    case 'N':
      return Key::gpuAlert;
    case 'a':
    case 'A':
      return Key::alert;
    case '<':
      return Key::lowerThreshold;
    case '>':
      return Key::higherThreshold;
    case '[':
      return Key::shorterDuration;
    case ']':
      return Key::longerDuration;
    case 'x':
    case 'X':
      return Key::dismiss;
    case 'k':
    case 'K':
      return Key::end;
    case 'y':
    case 'Y':
      return Key::yes;
    case 'f':
    case 'F':
      return Key::force;
    case '\x1b':
      return Key::escape;
    case 'h':
    case 'H':
    case '?':
      return Key::help;
    default:
      return Key::other;
  }
}

/// Of several bytes. Terminals send either form, after what the program asked for last.
Key keyOfSequence(std::string_view bytes) {
  if (bytes == "\x1b[A" || bytes == "\x1bOA") {
    return Key::up;
  }
  return bytes == "\x1b[B" || bytes == "\x1bOB" ? Key::down : Key::other;
}

}  // namespace

std::vector<Key> keysOf(std::string_view bytes) {
  std::vector<Key> keys;
  while (!bytes.empty()) {
    const std::size_t length = lengthOfKey(bytes);
    keys.push_back(length == 1 ? keyOf(bytes.front()) : keyOfSequence(bytes.substr(0, length)));
    bytes.remove_prefix(length);
  }
  return keys;
}

std::optional<std::vector<Key>> readKeys(int descriptor) {
  std::array<char, kMostBytes> bytes{};
  const ssize_t size = read(descriptor, bytes.data(), bytes.size());
  if (size > 0) {
    return keysOf({bytes.data(), static_cast<std::size_t>(size)});
  }
  const bool open = size < 0 && (errno == EINTR || errno == EAGAIN);
  return open ? std::optional(std::vector<Key>{}) : std::nullopt;
}

}  // namespace vel
