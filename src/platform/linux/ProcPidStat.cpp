// The text of /proc/<pid>/stat.
#include "platform/linux/ProcPidStat.h"

#include <algorithm>
#include <csignal>
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

/// A sum below 0 cannot be, and is 0.
bool takeChildrenTicks(std::string_view& text, std::uint64_t& ticks) {
  std::int64_t user = 0;
  std::int64_t system = 0;
  if (!takeField(text, user) || !takeField(text, system)) {
    return false;
  }
  ticks = static_cast<std::uint64_t>(std::max<std::int64_t>(user, 0)) +
          static_cast<std::uint64_t>(std::max<std::int64_t>(system, 0));
  return true;
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

constexpr std::uint64_t bitOf(int signal) {
  return std::uint64_t{1} << static_cast<unsigned>(signal - 1);
}

}  // namespace

bool ProcPidStat::controlsJobs() const {
  constexpr std::uint64_t kBoth = bitOf(SIGTSTP) | bitOf(SIGTTOU);
  return terminal != 0 && (handledSignals & kBoth) == kBoth;
}

std::optional<ProcPidStat> parseProcPidStat(std::string_view text) {
  ProcPidStat stat;
  std::int64_t residentPages = 0;
  const bool whole =
      takePidAndName(text, stat) && takeState(text, stat.state) && takeField(text, stat.parent) &&
      takeField(text, stat.group) && takeField(text, stat.session) &&
      takeField(text, stat.terminal) && skipFields(text, 1) && takeField(text, stat.flags) &&
      skipFields(text, 4) && takeField(text, stat.userTicks) && takeField(text, stat.systemTicks) &&
      takeChildrenTicks(text, stat.childrenTicks) && skipFields(text, 2) &&
      takeField(text, stat.threads) && skipFields(text, 1) && takeField(text, stat.startTicks) &&
      takeField(text, stat.virtualBytes) && takeField(text, residentPages);
  if (!whole || stat.parent < 0 || stat.threads < 0 || stat.threads > kMostThreads) {
    return std::nullopt;
  }
  // The kernel counts per processor, and the sum may be below 0 for a moment.
  stat.residentPages = static_cast<std::uint64_t>(std::max<std::int64_t>(residentPages, 0));
  std::uint64_t ignored = 0;
  std::uint64_t caught = 0;
  if (skipFields(text, 8) && takeField(text, ignored) && takeField(text, caught)) {
    stat.handledSignals = ignored | caught;
  }
  return stat;
}

}  // namespace vel
