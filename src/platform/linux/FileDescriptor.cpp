// An open file, closed with its owner.
#include "platform/linux/FileDescriptor.h"

#include <fcntl.h>
#include <sys/vfs.h>
#include <unistd.h>

#include <cerrno>

namespace vel {

bool FileDescriptor::open(const std::filesystem::path& path, int flags) {
  return openAt(AT_FDCWD, path.c_str(), flags);
}

bool FileDescriptor::openAt(int directory, const char* path, int flags) {
  close();
  do {
    number_ = ::openat(directory, path, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | flags);
  } while (number_ < 0 && errno == EINTR);
  return isOpen();
}

void FileDescriptor::close() {
  if (isOpen()) {
    ::close(number_);
    number_ = -1;
  }
}

long FileDescriptor::fileSystem() const {
  struct statfs status = {};
  return ::fstatfs(number_, &status) == 0 ? static_cast<long>(status.f_type) : 0;
}

}  // namespace vel
