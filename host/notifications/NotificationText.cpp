#include "host/notifications/NotificationText.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vel {
namespace {

constexpr std::string_view kReplacement = "\uFFFD";

struct Range {
  char32_t first;
  char32_t last;
};

constexpr std::array kHarmful{
    Range{0x0000, 0x001f},    // controls
    Range{0x007f, 0x009f},    // DEL, C1 controls
    Range{0x00ad, 0x00ad},    // soft hyphen
    Range{0x061c, 0x061c},    // Arabic letter mark
    Range{0x200b, 0x200f},    // of no width, marks of direction
    Range{0x2028, 0x202e},    // ends of lines and paragraphs, direction
    Range{0x2060, 0x206f},    // invisible operators, direction
    Range{0xfdd0, 0xfdef},    // no characters, see below
    Range{0xfeff, 0xfeff},    // byte-order mark
    Range{0xfff9, 0xfffb},    // annotations
    Range{0xe0000, 0xe007f},  // tags
};

bool isHarmful(char32_t character) {
  // The last two of each plane are no characters; sd-bus refuses a text that holds any of them.
  return (character & 0xfffe) == 0xfffe ||
         std::any_of(kHarmful.begin(), kHarmful.end(), [character](Range range) {
           return character >= range.first && character <= range.last;
         });
}

std::size_t sizeByLeadByte(unsigned char byte) {
  if (byte < 0x80) {
    return 1;
  }
  if ((byte & 0xe0) == 0xc0) {
    return 2;
  }
  if ((byte & 0xf0) == 0xe0) {
    return 3;
  }
  return (byte & 0xf8) == 0xf0 ? 4 : 0;
}

struct Decoded {
  char32_t character;
  std::size_t size;  ///< in bytes, 0 for what is no UTF-8
};

Decoded decodeFirst(std::string_view text) {
  constexpr Decoded malformed{0, 0};
  constexpr std::array<char32_t, 5> smallest{0, 0, 0x80, 0x800, 0x10000};
  const auto lead = static_cast<unsigned char>(text.front());
  const std::size_t size = sizeByLeadByte(lead);
  if (size == 0 || size > text.size()) {
    return malformed;
  }
  char32_t character = size == 1 ? lead : lead & (0x7fU >> size);
  for (const char next : text.substr(1, size - 1)) {
    const auto byte = static_cast<unsigned char>(next);
    if ((byte & 0xc0) != 0x80) {
      return malformed;
    }
    character = character << 6 | (byte & 0x3fU);
  }
  const bool isSurrogate = character >= 0xd800 && character <= 0xdfff;
  if (character < smallest[size] || character > 0x10ffff || isSurrogate) {
    return malformed;
  }
  return {character, size};
}

}  // namespace

std::string notificationText(std::string_view text) {
  std::string result;
  while (!text.empty()) {
    const auto [character, size] = decodeFirst(text);
    result += size == 0 || isHarmful(character) ? kReplacement : text.substr(0, size);
    text.remove_prefix(std::max<std::size_t>(size, 1));
  }
  return result;
}

std::string withEscapedMarkup(std::string_view text) {
  std::string result;
  for (const char character : text) {
    switch (character) {
      case '&':
        result += "&amp;";
        break;
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      default:
        result += character;
    }
  }
  return result;
}

}  // namespace vel
