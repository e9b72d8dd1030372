#include "host/desktop/workspace/TerminalPreferences.h"

#include <glib.h>

#include <filesystem>
#include <fstream>
#include <string_view>

namespace vel {
namespace {

void appendIdentifiers(const std::filesystem::path& file, std::vector<std::string>& into) {
  std::error_code error;
  if (!std::filesystem::is_regular_file(file, error)) {
    return;
  }
  constexpr std::string_view kSuffix = ".desktop";
  std::ifstream stream(file);
  for (std::string line; std::getline(stream, line);) {
    line.erase(0, line.find_first_not_of(" \t"));
    const std::string identifier = line.substr(0, line.find_first_of(": \t\r"));
    if (identifier.ends_with(kSuffix) && line.find_first_of("#/-+") != 0) {
      into.push_back(identifier.substr(0, identifier.size() - kSuffix.size()));
    }
  }
}

}  // namespace

std::vector<std::string> preferredTerminals(const std::vector<std::string>& desktops) {
  std::vector<std::filesystem::path> directories = {g_get_user_config_dir()};
  for (const gchar* const* directory = g_get_system_config_dirs(); *directory != nullptr;
       ++directory) {
    directories.emplace_back(*directory);
  }
  std::vector<std::string> identifiers;
  for (const auto& directory : directories) {
    for (const std::string& desktop : desktops) {
      appendIdentifiers(directory / (desktop + "-xdg-terminals.list"), identifiers);
    }
    appendIdentifiers(directory / "xdg-terminals.list", identifiers);
  }
  return identifiers;
}

}  // namespace vel
