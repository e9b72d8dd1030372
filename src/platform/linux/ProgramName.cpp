// What to call a process.
#include "platform/linux/ProgramName.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vel {

namespace {

/// As long as the kernel keeps them.
constexpr std::size_t kCutName = 15;

/// Sorted.
constexpr std::array kWrappers = std::to_array<std::string_view>(
    {"bwrap", "dbus-run-sessio", "doas", "firejail", "flatpak", "runuser", "snap-confine", "strace",
     "su", "sudo", "time", "timeout", "tini", "unshare", "xdg-dbus-proxy"});
constexpr std::array kShells = std::to_array<std::string_view>(
    {"ash", "bash", "busybox", "dash", "fish", "ksh", "ksh93", "mksh", "sh", "zsh"});
/// What comes before a program that takes their place.
constexpr std::array kStarters = std::to_array<std::string_view>(
    {"chrt", "env", "exec", "ionice", "nice", "nohup", "setsid", "stdbuf", "taskset"});
static_assert(std::is_sorted(kWrappers.begin(), kWrappers.end()));
static_assert(std::is_sorted(kStarters.begin(), kStarters.end()));
static_assert(std::is_sorted(kShells.begin(), kShells.end()));

template <typename Names>
bool isOneOf(const Names& sorted, std::string_view name) {
  return std::binary_search(sorted.begin(), sorted.end(), name);
}

std::string_view fileName(std::string_view path) {
  return path.substr(path.rfind('/') + 1);  // The whole without a "/", as npos + 1 is 0.
}

std::string_view takeArgument(std::string_view& arguments) {
  const std::string_view argument = arguments.substr(0, arguments.find('\0'));
  arguments.remove_prefix(std::min(argument.size() + 1, arguments.size()));
  return argument;
}

/// "-n", and the "5" of "-n 5".
bool startsLikeAnArgument(std::string_view word) {
  return word.front() == '-' || (word.front() >= '0' && word.front() <= '9');
}

/// The program of a command line for a shell, if that is all that it runs.
std::string_view onlyProgram(std::string_view commandLine) {
  if (commandLine.find_first_of(";|&()<>`$\n\"'\\={}*?") != std::string_view::npos) {
    return {};
  }
  bool isStarter = false;
  while (!commandLine.empty()) {
    const std::string_view word = commandLine.substr(0, commandLine.find(' '));
    commandLine.remove_prefix(std::min(word.size() + 1, commandLine.size()));
    const bool isArgument = word.empty() || (isStarter && startsLikeAnArgument(word));
    if (!isArgument && !isOneOf(kStarters, fileName(word))) {
      return fileName(word);
    }
    isStarter = isStarter || !word.empty();
  }
  return {};
}

/// Empty if it cannot be told.
std::string_view whatTheShellRuns(std::string_view arguments) {
  takeArgument(arguments);
  while (!arguments.empty()) {
    const std::string_view argument = takeArgument(arguments);
    if (!argument.starts_with('-')) {
      // A descriptor has a number only.
      return argument.starts_with("/dev/fd/") ? std::string_view() : fileName(argument);
    }
    if (!argument.starts_with("--") && argument.find('c') != std::string_view::npos) {
      return onlyProgram(takeArgument(arguments));
    }
  }
  return {};
}

/// The file in the command line whose name goes on where the kernel has cut it: the program itself,
/// or the script after its interpreter.
std::string_view whole(std::string_view command, std::string_view arguments) {
  for (int i = 0; i < 3 && !arguments.empty(); ++i) {
    const std::string_view name = fileName(takeArgument(arguments));
    if (name.starts_with(command)) {
      return name;
    }
  }
  return command;
}

}  // namespace

bool isWrapper(std::string_view command) {
  return isOneOf(kWrappers, command);
}

bool needsCommandLine(std::string_view command, bool controlsJobs) {
  return command.size() >= kCutName || (!controlsJobs && isOneOf(kShells, command));
}

std::string programName(std::string_view command, std::string_view arguments) {
  const std::string_view program =
      isOneOf(kShells, command) ? whatTheShellRuns(arguments) : whole(command, arguments);
  return std::string(program.empty() ? command : program);
}

}  // namespace vel
