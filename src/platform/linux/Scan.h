// Taking the kernel's plain texts apart, from the front. Nothing here looks past the end of a text.
#pragma once

#include <charconv>
#include <optional>
#include <string_view>
#include <system_error>

namespace vel {

/// Takes the first line off `text` and returns it without its newline. What follows the last
/// newline may have been cut off anywhere and is no line.
inline std::optional<std::string_view> takeLine(std::string_view& text) {
  const std::size_t end = text.find('\n');
  if (end == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end + 1);
  return line;
}

/// The only line of `text`, as a file in sysfs has it.
inline std::optional<std::string_view> onlyLine(std::string_view text) {
  const std::optional<std::string_view> line = takeLine(text);
  return text.empty() ? line : std::nullopt;
}

/// Takes an integer off the front of `text`. False, and nothing is taken, when there is none or `T`
/// cannot hold it.
template <typename T>
bool takeInteger(std::string_view& text, T& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{}) {
    return false;
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

/// Takes `c` off the front of `text`, if it is there.
inline bool takeCharacter(std::string_view& text, char c) {
  if (!text.starts_with(c)) {
    return false;
  }
  text.remove_prefix(1);
  return true;
}

}  // namespace vel
