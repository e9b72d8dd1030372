// What is told of a process when someone asks.
#include "platform/linux/ProcessDetails.h"

#include <pwd.h>

#include <algorithm>
#include <cerrno>
#include <string_view>

#include "platform/linux/FileDescriptor.h"
#include "platform/linux/Scan.h"

namespace vel {

namespace {

/// The second of the four numbers in the line (man 5 proc).
std::optional<uid_t> effectiveUser(std::string_view status) {
  constexpr std::string_view kUid = "Uid:\t";
  while (std::optional<std::string_view> line = takeLine(status)) {
    if (line->starts_with(kUid)) {
      line->remove_prefix(kUid.size());
      uid_t real = 0;
      uid_t effective = 0;
      const bool both =
          takeInteger(*line, real) && takeCharacter(*line, '\t') && takeInteger(*line, effective);
      return both ? std::optional(effective) : std::nullopt;
    }
  }
  return std::nullopt;
}

std::string lookUp(uid_t user) {
  passwd entry = {};
  passwd* found = nullptr;
  std::vector<char> buffer(1024);
  while (::getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(buffer.size() * 2);
  }
  return found != nullptr ? found->pw_name : std::to_string(user);
}

}  // namespace

std::optional<std::string> ProcessDetails::user(std::int32_t pid) {
  const std::optional<std::string_view> status = read(pid, "status");
  const std::optional<uid_t> user = status ? effectiveUser(*status) : std::nullopt;
  return user ? std::optional(nameOf(*user)) : std::nullopt;
}

std::string ProcessDetails::commandLine(std::int32_t pid) {
  std::string line(read(pid, "cmdline").value_or(std::string_view()));
  line.erase(line.find_last_not_of('\0') + 1);
  std::replace(line.begin(), line.end(), '\0', ' ');
  return line;
}

std::optional<std::string_view> ProcessDetails::read(std::int32_t pid, std::string_view name) {
  FileDescriptor file;
  return directory_.open(file, pid, name) ? directory_.read(file) : std::nullopt;
}

const std::string& ProcessDetails::nameOf(uid_t user) {
  const auto known = std::find_if(names_.begin(), names_.end(),
                                  [user](const auto& entry) { return entry.first == user; });
  return known != names_.end() ? known->second : names_.emplace_back(user, lookUp(user)).second;
}

}  // namespace vel
