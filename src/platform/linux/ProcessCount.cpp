// How many processes the system has.
#include "platform/linux/ProcessCount.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/magic.h>
#include <sys/stat.h>

#include <algorithm>
#include <limits>
#include <string_view>
#include <utility>

#include "platform/linux/DirectoryEntries.h"

namespace vel {

namespace {

bool isProcess(std::string_view name) {
  return !name.empty() &&
         std::all_of(name.begin(), name.end(), [](char c) { return c >= '0' && c <= '9'; });
}

bool isDirectory(int parent, const dirent64& entry) {
  if (entry.d_type != DT_UNKNOWN) {
    return entry.d_type == DT_DIR;
  }
  struct stat status = {};
  return ::fstatat(parent, &entry.d_name[0], &status, AT_SYMLINK_NOFOLLOW) == 0 &&
         S_ISDIR(status.st_mode);
}

}  // namespace

ProcessCount::ProcessCount(std::filesystem::path proc) : proc_(std::move(proc)) {}

std::optional<std::int32_t> ProcessCount::read() {
  if (!directory_.isOpen()) {
    if (!directory_.open(proc_, O_DIRECTORY)) {
      return std::nullopt;
    }
    onProcfs_ = directory_.fileSystem() == PROC_SUPER_MAGIC;
  }
  std::optional<std::uint64_t> count;
  if (onProcfs_) {
    count = countByLinks();
  }
  if (!count) {
    count = countByListing();
  }
  if (!count || !onProcfs_) {
    directory_.close();
  }
  if (!count || *count == 0 || *count > std::numeric_limits<std::int32_t>::max()) {
    return std::nullopt;
  }
  return static_cast<std::int32_t>(*count);
}

/// The link count of /proc is 2, as every directory's, and one for each directory in it, the
/// system's processes among them, those that are hidden or in other pid namespaces too
/// (proc_root_getattr in the kernel's fs/proc/root.c). The other directories come first in the
/// listing, so that only its beginning is read. They are counted each time, because a module may
/// bring one; that takes some ten microseconds.
std::optional<std::uint64_t> ProcessCount::countByLinks() {
  struct stat status = {};
  std::uint64_t others = 2;
  const bool listed = forEachEntry(
      directory_.number(), entries_, [this, &others](const dirent64& entry, std::string_view name) {
        if (isProcess(name)) {
          return false;
        }
        if (name != "." && name != ".." && isDirectory(directory_.number(), entry)) {
          ++others;
        }
        return true;
      });
  if (!listed || ::fstat(directory_.number(), &status) != 0 || status.st_nlink <= others) {
    return std::nullopt;
  }
  return status.st_nlink - others;
}

std::optional<std::uint64_t> ProcessCount::countByListing() {
  std::uint64_t count = 0;
  const bool listed = forEachEntry(
      directory_.number(), entries_, [this, &count](const dirent64& entry, std::string_view name) {
        if (isProcess(name) && isDirectory(directory_.number(), entry)) {
          ++count;
        }
        return true;
      });
  return listed ? std::optional(count) : std::nullopt;
}

}  // namespace vel
