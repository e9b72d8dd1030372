#include "host/terminal/Text.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstddef>
#include <cstdint>
#include <cwchar>

namespace vel {
namespace {

constexpr wchar_t kUnknown = L'?';

struct Sequence {
  std::uint32_t bits;  ///< of the lead byte
  int continuations;
  std::uint32_t smallest;  ///< anything below has a shorter form and is malformed
};

Sequence sequenceOf(unsigned char lead) {
  if (lead < 0x80) {
    return {lead, 0, 0};
  }
  if ((lead & 0xe0) == 0xc0) {
    return {lead & 0x1fU, 1, 0x80};
  }
  if ((lead & 0xf0) == 0xe0) {
    return {lead & 0x0fU, 2, 0x800};
  }
  if ((lead & 0xf8) == 0xf0) {
    return {lead & 0x07U, 3, 0x10000};
  }
  return {0, 0, UINT32_MAX};
}

struct Range {
  std::uint32_t first;
  std::uint32_t last;
};
/// Characters that are not seen but change what is seen around them, as those that turn the
/// direction of writing do: Unicode's general category Cf, and the tags.
constexpr std::array<Range, 11> kFormats{{{0xad, 0xad},
                                          {0x600, 0x605},
                                          {0x61c, 0x61c},
                                          {0x180e, 0x180e},
                                          {0x200b, 0x200f},
                                          {0x2028, 0x202e},
                                          {0x2060, 0x206f},
                                          {0xfeff, 0xfeff},
                                          {0xfff9, 0xfffb},
                                          {0x1d173, 0x1d17a},
                                          {0xe0000, 0xe0fff}}};

bool isFormat(std::uint32_t character) {
  return std::any_of(kFormats.begin(), kFormats.end(), [character](const Range& range) {
    return character >= range.first && character <= range.last;
  });
}

/// Takes one character off the front of `text`, or one byte of a malformed one.
wchar_t takeCharacter(std::string_view& text) {
  const auto [bits, continuations, smallest] = sequenceOf(static_cast<unsigned char>(text.front()));
  text.remove_prefix(1);
  std::uint32_t value = bits;
  for (int i = 0; i < continuations; ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (at >= text.size() || (static_cast<unsigned char>(text[at]) & 0xc0) != 0x80) {
      return kUnknown;
    }
    value = value << 6 | (static_cast<unsigned char>(text[at]) & 0x3fU);
  }
  if (value < smallest) {
    return kUnknown;
  }
  text.remove_prefix(static_cast<std::size_t>(continuations));
  // Surrogates, values beyond Unicode and control characters have no width.
  const auto character = static_cast<wchar_t>(value);
  return wcwidth(character) < 0 || isFormat(value) ? kUnknown : character;
}

std::size_t gap(std::wstring_view text, int columns) {
  return static_cast<std::size_t>(std::max(0, columns - widthOf(text)));
}

}  // namespace

std::wstring decode(std::string_view utf8) {
  std::wstring text;
  while (!utf8.empty()) {
    const wchar_t character = takeCharacter(utf8);
    // A mark that combines with the character before it must not reach for a stranger's.
    text += text.empty() && wcwidth(character) == 0 ? kUnknown : character;
  }
  return text;
}

std::string encode(std::wstring_view text) {
  std::string bytes;
  std::array<char, MB_LEN_MAX> buffer{};
  std::mbstate_t state{};
  for (const wchar_t character : text) {
    const std::size_t size = std::wcrtomb(buffer.data(), character, &state);
    if (size == static_cast<std::size_t>(-1)) {
      state = {};
      bytes += '?';
    } else {
      bytes.append(buffer.data(), size);
    }
  }
  return bytes;
}

int widthOf(std::wstring_view text) {
  int columns = 0;
  for (const wchar_t character : text) {
    columns += std::max(0, wcwidth(character));
  }
  return columns;
}

std::wstring_view clipped(std::wstring_view text, int columns) {
  std::size_t length = 0;
  for (; length < text.size(); ++length) {
    columns -= std::max(0, wcwidth(text[length]));
    if (columns < 0) {
      break;
    }
  }
  return text.substr(0, length);
}

std::wstring shortened(std::wstring_view text, int columns) {
  if (widthOf(text) <= columns) {
    return std::wstring(text);
  }
  const wchar_t ellipsis = wcwidth(L'…') == 1 ? L'…' : L'~';
  return columns > 0 ? std::wstring(clipped(text, columns - 1)) + ellipsis : std::wstring();
}

std::wstring_view takeLine(std::wstring_view& text, int columns) {
  const std::size_t fitting = clipped(text, std::max(1, columns)).size();
  const std::size_t blank = text.rfind(L' ', fitting);
  const bool isAtBlank = fitting < text.size() && blank != std::wstring_view::npos;
  const std::size_t length = std::max(std::size_t{1}, isAtBlank ? blank + 1 : fitting);
  const std::wstring_view line = text.substr(0, length);
  text.remove_prefix(line.size());
  return line;
}

std::wstring paddedLeft(std::wstring_view text, int columns) {
  return std::wstring(gap(text, columns), L' ').append(text);
}

std::wstring paddedRight(std::wstring_view text, int columns) {
  return std::wstring(text).append(gap(text, columns), L' ');
}

}  // namespace vel
