#include "host/desktop/workspace/Words.h"

#include <glib.h>

#include <algorithm>

namespace vel {
namespace {

template <typename IsSeparator>
std::vector<std::string> splitWhere(std::string_view text, IsSeparator isSeparator) {
  std::vector<std::string> parts;
  while (true) {
    const auto* const begin = std::find_if_not(text.begin(), text.end(), isSeparator);
    const auto* const end = std::find_if(begin, text.end(), isSeparator);
    if (begin == end) {
      return parts;
    }
    parts.emplace_back(begin, end);
    text.remove_prefix(std::size_t(end - text.begin()));
  }
}

}  // namespace

std::vector<std::string> split(std::string_view text, std::string_view separators) {
  return splitWhere(text, [&](char c) { return separators.find(c) != std::string_view::npos; });
}

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  std::transform(lower.begin(), lower.end(), lower.begin(), g_ascii_tolower);
  return lower;
}

std::vector<std::string> wordsOf(std::string_view text) {
  return splitWhere(lowerCase(text), [](char c) { return !g_ascii_isalnum(c); });
}

}  // namespace vel
