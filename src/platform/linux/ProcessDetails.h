// What is told of a process when someone asks.
#pragma once

#include <sys/types.h>

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/ProcessDirectory.h"

namespace vel {

/// Each question reads a file; the names of users are looked up once.
class ProcessDetails {
 public:
  /// `directory` outlives this.
  explicit ProcessDetails(ProcessDirectory& directory) : directory_(directory) {}

  /// The login name of its effective user, or the number of one without a name; nothing when the
  /// process has ended.
  [[nodiscard]] std::optional<std::string> user(std::int32_t pid);

  /// Its arguments with blanks between them, any bytes but NUL, up to 32 KiB. Empty where there are
  /// none, as of a part of the kernel, or where they may not be known.
  [[nodiscard]] std::string commandLine(std::int32_t pid);

 private:
  std::optional<std::string_view> read(std::int32_t pid, std::string_view name);
  const std::string& nameOf(uid_t user);

  ProcessDirectory& directory_;
  std::vector<std::pair<uid_t, std::string>> names_;
};

}  // namespace vel
