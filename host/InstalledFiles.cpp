#include "host/InstalledFiles.h"

#include <system_error>

namespace vel {

std::filesystem::path installedPath(const std::filesystem::path& relative) {
  std::error_code error;
  const auto executable = std::filesystem::read_symlink("/proc/self/exe", error);
  return executable.parent_path().parent_path() / relative;
}

}  // namespace vel
