// The environment, and what stands in for a missing or useless variable.
#include "host/store/SettingsPath.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <optional>

namespace vel {
namespace {

/// Nothing unless it is absolute.
std::optional<std::filesystem::path> pathFromEnvironment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr || *value != '/') {
    return std::nullopt;
  }
  return value;
}

std::filesystem::path homeDirectory() {
  if (const auto home = pathFromEnvironment("HOME")) {
    return *home;
  }
  const passwd* user = getpwuid(getuid());
  return user != nullptr ? user->pw_dir : "/";
}

}  // namespace

std::filesystem::path settingsPath() {
  const auto configuration = pathFromEnvironment("XDG_CONFIG_HOME");
  return configuration.value_or(homeDirectory() / ".config") / "velbar" / "settings.ini";
}

}  // namespace vel
