// Where the settings are kept.
#pragma once

#include <filesystem>

namespace vel {

/// velbar/settings.ini in the user's configuration directory: $XDG_CONFIG_HOME where it is an
/// absolute path, else .config in the home directory (XDG Base Directory Specification). The home
/// directory is $HOME, or the user database's where that is not absolute.
std::filesystem::path settingsPath();

}  // namespace vel
