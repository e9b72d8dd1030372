// System calls rather than streams: only they tell whether a text has reached the disk.
#include "host/store/SettingsFile.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <string_view>
#include <system_error>

#include "host/store/SettingsDocument.h"

namespace vel {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void fail(const fs::path& path, const char* what, int error = errno) {
  throw std::system_error(error, std::generic_category(), path.string() + ": " + what);
}

/// Repeats a system call that a signal has interrupted.
template <typename Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) {
    result = call();
  }
  return result;
}

class Descriptor {
 public:
  explicit Descriptor(int descriptor) : descriptor_(descriptor) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  [[nodiscard]] int get() const { return descriptor_; }
  [[nodiscard]] bool isOpen() const { return descriptor_ != -1; }

  /// False if what was written could not be stored after all. An interrupted close has closed, see
  /// `man 2 close`.
  bool close() {
    const int result = isOpen() ? ::close(descriptor_) : 0;
    descriptor_ = -1;
    return result == 0 || errno == EINTR;
  }

 private:
  int descriptor_;
};

int openDirectory(const fs::path& path) {
  return uninterrupted([&] { return open(path.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC); });
}

/// The path with links followed, the last of which may lead to nothing. Links in a loop are left to
/// the next system call.
fs::path withoutLinks(fs::path path) {
  constexpr int kMostLinks = 40;  // as the kernel
  for (int i = 0; i < kMostLinks; ++i) {
    std::error_code error;
    const fs::path target = fs::read_symlink(path, error);
    if (error) {
      break;
    }
    path = path.parent_path() / target;
  }
  return path;
}

bool makeDirectories(const fs::path& path) {
  constexpr mode_t kMode = 0700;
  if (mkdir(path.c_str(), kMode) == 0 || errno == EEXIST) {
    return true;
  }
  return errno == ENOENT && path != path.parent_path() && makeDirectories(path.parent_path()) &&
         (mkdir(path.c_str(), kMode) == 0 || errno == EEXIST);
}

bool writeAll(int descriptor, std::string_view text) {
  while (!text.empty()) {
    const auto size = uninterrupted([&] { return write(descriptor, text.data(), text.size()); });
    if (size == -1) {
      return false;
    }
    text.remove_prefix(static_cast<std::size_t>(size));
  }
  return true;
}

void keepOwnerAndMode(int descriptor, const fs::path& original) {
  struct stat status {};
  if (stat(original.c_str(), &status) == 0) {
    // Root under a user's home directory must not take the file away from the user; anyone else may
    // not give files away, and need not.
    [[maybe_unused]] const int owned = fchown(descriptor, status.st_uid, status.st_gid);
    fchmod(descriptor, status.st_mode & (S_IRWXU | S_IRWXG | S_IRWXO));
  }
}

/// A directory's entries are on the disk only after a sync of its own; some file systems know none.
bool syncDirectory(const fs::path& path) {
  const Descriptor directory(openDirectory(path));
  return directory.isOpen() &&
         (uninterrupted([&] { return fsync(directory.get()); }) == 0 || errno == EINVAL);
}

std::string utcNow() {
  const std::time_t now = std::time(nullptr);
  std::tm parts{};
  gmtime_r(&now, &parts);
  std::array<char, sizeof "00000000T000000Z"> text{};
  return {text.data(), std::strftime(text.data(), text.size(), "%Y%m%dT%H%M%SZ", &parts)};
}

}  // namespace

SettingsFile::SettingsFile(const fs::path& path) : path_(fs::absolute(path)) {}

void SettingsFile::makeDirectory() const {
  if (!makeDirectories(path_.parent_path())) {
    fail(path_, "cannot be written");
  }
}

SettingsFile::Lock::Lock(const SettingsFile& file)
    : descriptor_(openDirectory(file.path_.parent_path())) {
  if (descriptor_ == -1) {
    fail(file.path_, "cannot be written");
  }
  if (uninterrupted([this] { return flock(descriptor_, LOCK_EX); }) == -1) {
    const int error = errno;
    close(descriptor_);
    fail(file.path_, "cannot be locked", error);
  }
}

SettingsFile::Lock::~Lock() {
  close(descriptor_);
}

std::string SettingsFile::read() const {
  struct stat status {};
  if (stat(path_.c_str(), &status) == -1) {
    if (errno == ENOENT) {
      return "";
    }
    fail(path_, "cannot be read");
  }
  // Before it is opened: that alone has effects on a device, and waits at a pipe.
  if (!S_ISREG(status.st_mode)) {
    throw SettingsFault(0, "not a regular file");
  }
  const Descriptor file(
      uninterrupted([this] { return open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK); }));
  if (!file.isOpen()) {
    fail(path_, "cannot be read");
  }
  std::string text;
  std::array<char, 4096> block{};
  while (true) {
    const auto size = uninterrupted([&] { return ::read(file.get(), block.data(), block.size()); });
    if (size == -1) {
      fail(path_, "cannot be read");
    }
    if (size == 0) {
      return text;
    }
    text.append(block.data(), static_cast<std::size_t>(size));
    if (text.size() > SettingsDocument::kMaximumSize) {
      throw SettingsFault(0, "bigger than 1 MiB");
    }
  }
}

void SettingsFile::write(const std::string& text) const {
  constexpr const char* kRefused = "cannot be written";
  if (text.size() > SettingsDocument::kMaximumSize) {
    fail(path_, kRefused, EFBIG);
  }
  const fs::path target = withoutLinks(path_);
  fs::path temporary = target;
  temporary += ".tmp";
  // What a crash has left; the lock tells that nobody is writing it.
  unlink(temporary.c_str());
  constexpr mode_t kMode = 0666;
  Descriptor file(uninterrupted(
      [&] { return open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kMode); }));
  if (!file.isOpen()) {
    fail(path_, kRefused);
  }
  keepOwnerAndMode(file.get(), target);
  if (!writeAll(file.get(), text) || uninterrupted([&] { return fsync(file.get()); }) == -1 ||
      !file.close() || std::rename(temporary.c_str(), target.c_str()) == -1) {
    const int error = errno;
    unlink(temporary.c_str());
    fail(path_, kRefused, error);
  }
  if (!syncDirectory(target.parent_path())) {
    fail(path_, kRefused);
  }
}

fs::path SettingsFile::moveAside() const {
  struct stat status {};
  const bool isRegular = stat(path_.c_str(), &status) == 0 && S_ISREG(status.st_mode);
  const fs::path original = isRegular ? withoutLinks(path_) : path_;
  const std::string first = original.string() + ".broken-" + utcNow();
  std::string aside = first;
  for (int i = 2; lstat(aside.c_str(), &status) == 0; ++i) {
    aside = first + "-" + std::to_string(i);
  }
  if (std::rename(original.c_str(), aside.c_str()) == -1) {
    fail(path_, "cannot be moved aside");
  }
  return aside;
}

}  // namespace vel
