// A small text file that is read whole, again and again.
#include "platform/linux/TextFile.h"

#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <utility>

namespace vel {

namespace {

constexpr std::size_t kFirstSize = 4096;

}  // namespace

TextFile::TextFile(std::filesystem::path path) : path_(std::move(path)) {}

std::optional<std::string_view> TextFile::read() {
  size_ = 0;
  if (!file_.isOpen() && !open()) {
    return std::nullopt;
  }
  const bool whole = readWhole();
  if (!whole || !stays_) {
    file_.close();
  }
  if (!whole) {
    size_ = 0;
    return std::nullopt;
  }
  return text();
}

bool TextFile::open() {
  struct stat status = {};
  if (!file_.open(path_) || ::fstat(file_.number(), &status) != 0 || !S_ISREG(status.st_mode)) {
    file_.close();
    return false;
  }
  const long fileSystem = file_.fileSystem();
  stays_ = fileSystem == PROC_SUPER_MAGIC || fileSystem == SYSFS_MAGIC;
  return true;
}

/// The end is where a reading gives nothing: files of procfs have no size, and one reading may give
/// less than is there.
bool TextFile::readWhole() {
  for (;;) {
    if (size_ == buffer_.size() && !grow()) {
      return false;
    }
    const ssize_t got = ::pread(file_.number(), buffer_.data() + size_, buffer_.size() - size_,
                                static_cast<off_t>(size_));
    if (got == 0) {
      return true;
    }
    if (got > 0) {
      size_ += static_cast<std::size_t>(got);
    } else if (errno != EINTR) {
      return false;
    }
  }
}

bool TextFile::grow() {
  if (buffer_.size() > kMaxSize) {
    return false;
  }
  // One byte more than the longest text, so that its end is seen.
  buffer_.resize(std::min(std::max(kFirstSize, 2 * buffer_.size()), kMaxSize + 1));
  return true;
}

}  // namespace vel
