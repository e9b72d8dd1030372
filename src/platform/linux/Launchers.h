// Programs that start others on somebody's behalf.
#pragma once

#include <string_view>

namespace vel {

/// The launcher that programs of that command name are parts of ("sshd-session" is one of "sshd"):
/// a desktop's panel, menu, dock, file or window manager, a server of logins, a supervisor of
/// services. What it starts is no part of it. Empty for every other program.
std::string_view launcherFamily(std::string_view command);

inline bool isLauncher(std::string_view command) {
  return !launcherFamily(command).empty();
}

}  // namespace vel
