// The text of /proc/<pid>/stat.
#include "platform/linux/ProcPidStat.h"

#include <algorithm>
#include <cstddef>

#include "platform/linux/Scan.h"

namespace vel {

namespace {

/// Of the whole system (pid_max in Documentation/admin-guide/sysctl/kernel.rst).
constexpr std::int32_t kMostThreads = std::int32_t{1} << 22;

/// Takes the space and the number after it. At the end of a text that was cut there may be half of
/// one: it is not taken.
template <typename T>
bool takeField(std::string_view& text, T& value) {
  return takeCharacter(text, ' ') && takeInteger(text, value) &&
         (text.starts_with(' ') || text.starts_with('\n'));
}

bool skipFields(std::string_view& text, int count) {
  for (; count > 0; --count) {
    const std::size_t next = text.find(' ', 1);
    if (next == std::string_view::npos) {
      return false;
    }
    text.remove_prefix(next);
  }
  return true;
}

/// Takes all up to the parenthesis that ends the name. It is the last one of the text, since only
/// numbers follow the name.
bool takePidAndName(std::string_view& text, ProcPidStat& stat) {
  if (!takeInteger(text, stat.pid) || stat.pid <= 0 || !text.starts_with(" (")) {
    return false;
  }
  const std::size_t end = text.rfind(')');
  if (end == std::string_view::npos) {
    return false;
  }
  stat.name = text.substr(2, end - 2);
  text.remove_prefix(end + 1);
  return true;
}

bool takeState(std::string_view& text, char& state) {
  const bool isLetter = text.size() >= 2 &&
                        ((text[1] >= 'A' && text[1] <= 'Z') || (text[1] >= 'a' && text[1] <= 'z'));
  if (!isLetter || text[0] != ' ') {
    return false;
  }
  state = text[1];
  text.remove_prefix(2);
  return true;
}

}  // namespace

std::optional<ProcPidStat> parseProcPidStat(std::string_view text) {
  ProcPidStat stat;
  std::int64_t residentPages = 0;
  const bool whole =
      takePidAndName(text, stat) && takeState(text, stat.state) && takeField(text, stat.parent) &&
      skipFields(text, 4) && takeField(text, stat.flags) && skipFields(text, 4) &&
      takeField(text, stat.userTicks) && takeField(text, stat.systemTicks) && skipFields(text, 4) &&
      takeField(text, stat.threads) && skipFields(text, 1) && takeField(text, stat.startTicks) &&
      takeField(text, stat.virtualBytes) && takeField(text, residentPages);
  if (!whole || stat.parent < 0 || stat.threads < 0 || stat.threads > kMostThreads) {
    return std::nullopt;
  }
  // The kernel counts per processor, and the sum may be below 0 for a moment.
  stat.residentPages = static_cast<std::uint64_t>(std::max<std::int64_t>(residentPages, 0));
  return stat;
}

}  // namespace vel
