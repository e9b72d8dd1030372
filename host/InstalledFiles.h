// Where the program's own files are.
#pragma once

#include <filesystem>

namespace vel {

/// A path of the installation, given relative to the directory above the executable's.
std::filesystem::path installedPath(const std::filesystem::path& relative);

}  // namespace vel
