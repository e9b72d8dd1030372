// The processes' directories in procfs.
#include "platform/linux/ProcessDirectory.h"

#include <fcntl.h>
#include <linux/magic.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <climits>
#include <cstddef>
#include <utility>

#include "platform/linux/DirectoryEntries.h"
#include "platform/linux/Scan.h"

namespace vel {

namespace {

constexpr std::size_t kBufferSize = std::size_t{32} * 1024;

/// "1234/stat", without allocating.
class ProcessPath {
 public:
  ProcessPath(std::int32_t pid, std::string_view name) {
    constexpr std::size_t kLongestName = 16;
    char* end =
        std::to_chars(path_.data(), path_.data() + path_.size() - kLongestName - 2, pid).ptr;
    *end++ = '/';
    std::copy_n(name.begin(), std::min(name.size(), kLongestName), end);  // and zeros follow
  }
  [[nodiscard]] const char* c_str() const { return path_.data(); }

 private:
  std::array<char, 32> path_{};
};

/// The pid that an entry of procfs is named after, or 0.
std::int32_t pidOf(std::string_view name) {
  std::int32_t pid = 0;
  const bool decimal = !name.starts_with('0') && !name.starts_with('-');
  return decimal && takeInteger(name, pid) && name.empty() ? pid : 0;
}

/// Whether the text of a status file gives a single pid, that is, none of inner namespaces after
/// the one of procfs itself (NSpid in man 5 proc).
bool hasOnePid(std::string_view status) {
  constexpr std::string_view kName = "NSpid:\t";
  while (std::optional<std::string_view> line = takeLine(status)) {
    if (line->starts_with(kName)) {
      line->remove_prefix(kName.size());
      return pidOf(*line) != 0;
    }
  }
  return false;
}

}  // namespace

ProcessDirectory::ProcessDirectory(std::filesystem::path proc)
    : path_(std::move(proc)), buffer_(kBufferSize) {
  if (openDirectory()) {
    onProcfs_ = directory_.fileSystem() == PROC_SUPER_MAGIC;
    sharesPids_ = onProcfs_ && hasOurPids();
  }
}

bool ProcessDirectory::openDirectory() {
  return directory_.open(path_, O_DIRECTORY);
}

/// In procfs of a namespace that we are not in, there is no "self".
bool ProcessDirectory::hasOurPids() {
  FileDescriptor file;
  if (!file.openAt(directory_.number(), "self/status")) {
    return false;
  }
  const std::optional<std::string_view> status = read(file);
  return status && hasOnePid(*status);
}

bool ProcessDirectory::list(std::vector<std::int32_t>& pids) {
  pids.clear();
  // Captured files may have been put in the place of others.
  if (!onProcfs_ && !openDirectory()) {
    return false;
  }
  const bool listed = forEachEntry(directory_.number(), buffer_,
                                   [&pids](const dirent64& /*entry*/, std::string_view name) {
                                     if (const std::int32_t pid = pidOf(name); pid != 0) {
                                       pids.push_back(pid);
                                     }
                                     return true;
                                   });
  if (!std::is_sorted(pids.begin(), pids.end())) {
    std::sort(pids.begin(), pids.end());
  }
  return listed;
}

bool ProcessDirectory::open(FileDescriptor& file, std::int32_t pid, std::string_view name) const {
  return file.openAt(directory_.number(), ProcessPath(pid, name).c_str());
}

/// One reading gives all that fits: the kernel makes each of these texts in one piece.
std::optional<std::string_view> ProcessDirectory::read(const FileDescriptor& file) {
  ssize_t got = 0;
  do {
    got = ::pread(file.number(), buffer_.data(), buffer_.size(), 0);
  } while (got < 0 && errno == EINTR);
  if (got <= 0) {
    return std::nullopt;
  }
  return std::string_view(buffer_.data(), static_cast<std::size_t>(got));
}

std::optional<std::string> ProcessDirectory::executablePath(std::int32_t pid) const {
  constexpr std::string_view kDeleted = " (deleted)";
  std::array<char, PATH_MAX> buffer{};
  const ssize_t size = ::readlinkat(directory_.number(), ProcessPath(pid, "exe").c_str(),
                                    buffer.data(), buffer.size());
  if (size <= 0) {
    return std::nullopt;
  }
  std::string path(buffer.data(), static_cast<std::size_t>(size));
  if (path.ends_with(kDeleted)) {
    path.resize(path.size() - kDeleted.size());
  }
  return path;
}

}  // namespace vel
