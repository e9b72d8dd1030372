// The text of /proc/<pid>/cgroup.
#include "platform/linux/ControlGroup.h"

#include <algorithm>
#include <cstddef>
#include <optional>

#include "platform/linux/Scan.h"

namespace vel {

namespace {

/// The path of a line "hierarchy:controllers:path" if the hierarchy is one that can have units.
std::string_view managedPath(std::string_view line) {
  constexpr std::string_view kUnified = "0::";
  constexpr std::string_view kNamed = ":name=systemd:";
  if (line.starts_with(kUnified)) {
    return line.substr(kUnified.size());
  }
  line.remove_prefix(std::min(line.find(':'), line.size()));
  return line.starts_with(kNamed) ? line.substr(kNamed.size()) : std::string_view();
}

bool isUnit(std::string_view component) {
  const auto isOf = [component](std::string_view kind) {
    return component.size() > kind.size() && component.ends_with(kind);
  };
  return isOf(".scope") || isOf(".service");
}

std::string_view upToUnit(std::string_view path) {
  // What the kernel adds once the group has been removed, as it may be before its last process is
  // waited for.
  constexpr std::string_view kDeleted = " (deleted)";
  if (path.ends_with(kDeleted)) {
    path.remove_suffix(kDeleted.size());
  }
  for (;;) {
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) {
      return {};
    }
    if (isUnit(path.substr(slash + 1))) {
      return path;
    }
    path = path.substr(0, slash);
  }
}

}  // namespace

std::string_view unitPath(std::string_view text) {
  while (const std::optional<std::string_view> line = takeLine(text)) {
    const std::string_view path = upToUnit(managedPath(*line));
    if (!path.empty()) {
      return path;
    }
  }
  return {};
}

/// Named so by the login manager (man 5 org.freedesktop.login1, "Unit").
bool isSessionUnit(std::string_view path) {
  path.remove_prefix(path.rfind('/') + 1);  // The whole without a "/", as npos + 1 is 0.
  return path.starts_with("session-") && path.ends_with(".scope");
}

}  // namespace vel
