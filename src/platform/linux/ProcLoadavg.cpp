// The text of /proc/loadavg.
#include "platform/linux/ProcLoadavg.h"

#include <charconv>
#include <cstddef>
#include <system_error>

#include "platform/linux/Scan.h"

namespace vel {

namespace {

/// Takes the field before the next space. At the end of a text that was cut there may be half of
/// one: it is not taken.
std::optional<std::string_view> takeField(std::string_view& text) {
  const std::size_t end = text.find(' ');
  if (end == std::string_view::npos) {
    return std::nullopt;
  }
  const std::string_view field = text.substr(0, end);
  text.remove_prefix(end + 1);
  return field;
}

/// from_chars, unlike strtod, knows no locale. It knows "inf" and "nan", which are no averages.
bool parseAverage(std::string_view field, double& average) {
  if (field.empty() || field.front() < '0' || field.front() > '9') {
    return false;
  }
  const char* const end = field.data() + field.size();
  double value = 0;
  const auto [rest, error] = std::from_chars(field.data(), end, value, std::chars_format::fixed);
  if (error != std::errc{} || rest != end) {
    return false;
  }
  average = value;
  return true;
}

}  // namespace

int parseLoadAverages(std::string_view text, std::array<double, 3>& averages) {
  int count = 0;
  for (double& average : averages) {
    const std::optional<std::string_view> field = takeField(text);
    if (!field || !parseAverage(*field, average)) {
      break;
    }
    ++count;
  }
  return count > 0 ? count : -1;
}

std::optional<std::int32_t> parseThreadCount(std::string_view text) {
  for (int average = 0; average < 3; ++average) {
    if (!takeField(text)) {
      return std::nullopt;
    }
  }
  std::uint32_t runnable = 0;
  std::int32_t threads = 0;
  const bool whole = takeInteger(text, runnable) && takeCharacter(text, '/') &&
                     takeInteger(text, threads) && takeCharacter(text, ' ');
  return whole && threads > 0 ? std::optional(threads) : std::nullopt;
}

}  // namespace vel
