// The processes' directories in procfs.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/linux/FileDescriptor.h"

namespace vel {

class ProcessDirectory {
 public:
  explicit ProcessDirectory(std::filesystem::path proc);

  /// Whether the directory is procfs, as against files captured from another machine's.
  [[nodiscard]] bool onProcfs() const { return onProcfs_; }

  /// Whether its pids are those of this process's own pid namespace.
  [[nodiscard]] bool sharesPids() const { return sharesPids_; }

  /// Overwrites `pids`, whose storage is kept, with every process that may be seen, in ascending
  /// order. False when the directory cannot be listed.
  bool list(std::vector<std::int32_t>& pids);

  /// Opens a file of the process, by a name of few letters. After false, errno tells why.
  bool open(FileDescriptor& file, std::int32_t pid, std::string_view name) const;

  /// The beginning of an open file, up to 32 KiB, valid until the next operation; more than the
  /// kernel writes in any that is read here. Nothing when the process has ended.
  std::optional<std::string_view> read(const FileDescriptor& file);

  /// The file that the process runs, without the kernel's mark for one that has been deleted;
  /// nothing where it may not be known.
  [[nodiscard]] std::optional<std::string> executablePath(std::int32_t pid) const;

 private:
  bool openDirectory();
  bool hasOurPids();

  std::filesystem::path path_;
  FileDescriptor directory_;
  bool onProcfs_ = false;
  bool sharesPids_ = false;
  std::vector<char> buffer_;
};

}  // namespace vel
