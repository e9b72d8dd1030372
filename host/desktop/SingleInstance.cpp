#include "host/desktop/SingleInstance.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <system_error>
#include <utility>

namespace vel {
namespace {

constexpr std::size_t kLongestWord = 64;

[[noreturn]] void fail(int error, const std::filesystem::path& path) {
  throw std::system_error(error, std::generic_category(), path.string());
}

/// Made if it is missing: Qt would do so later on, and a second start find another directory.
bool isOurDirectory(const char* path) {
  mkdir(path, S_IRWXU);
  struct stat status {};
  return stat(path, &status) == 0 && S_ISDIR(status.st_mode) && status.st_uid == getuid();
}

/// XDG Base Directory Specification: where it is not set, a replacement with the same access. So
/// too where it is another user's, as after su.
std::filesystem::path runtimeDirectory() {
  if (const char* given = std::getenv("XDG_RUNTIME_DIR");
      given != nullptr && given[0] == '/' && isOurDirectory(given)) {
    return given;
  }
  std::filesystem::path made = "/tmp/velbar-" + std::to_string(getuid());
  if (mkdir(made.c_str(), S_IRWXU) == -1 && errno != EEXIST) {
    fail(errno, made);
  }
  struct stat status {};
  if (lstat(made.c_str(), &status) == -1) {
    fail(errno, made);
  }
  constexpr mode_t kOthers = S_IRWXG | S_IRWXO;
  if (!S_ISDIR(status.st_mode) || status.st_uid != getuid() || (status.st_mode & kOthers) != 0) {
    fail(EACCES, made);
  }
  return made;
}

std::string fileName(std::string name) {
  std::replace(name.begin(), name.end(), '/', '_');
  return "velbar-" + name;
}

sockaddr_un addressOf(const std::filesystem::path& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  if (path.native().size() >= sizeof address.sun_path) {
    fail(ENAMETOOLONG, path);
  }
  std::memcpy(&address.sun_path[0], path.c_str(), path.native().size() + 1);
  return address;
}

const sockaddr* generic(const sockaddr_un& address) {
  return reinterpret_cast<const sockaddr*>(&address);
}

int openSocket() {
  return socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0);
}

/// Whether nobody else has the lock, which lasts as long as the file is open.
bool takeLock(int file, const std::filesystem::path& path) {
  while (flock(file, LOCK_EX | LOCK_NB) == -1) {
    if (errno == EWOULDBLOCK) {
      return false;
    }
    if (errno != EINTR) {
      fail(errno, path);
    }
  }
  return true;
}

}  // namespace

SingleInstance::SingleInstance(const std::string& name)
    : socketPath_(runtimeDirectory() / (fileName(name) + ".socket")) {
  std::filesystem::path lock = socketPath_;
  lock.replace_extension(".lock");
  const int file = open(lock.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, S_IRUSR | S_IWUSR);
  if (file == -1) {
    fail(errno, lock);
  }
  lock_ = std::make_unique<EventDescriptor>(file, "open");
  if (!takeLock(file, lock)) {
    return;
  }
  const sockaddr_un address = addressOf(socketPath_);
  socket_ = std::make_unique<EventDescriptor>(openSocket(), "socket");
  // One that has been killed has left its socket.
  unlink(socketPath_.c_str());
  if (bind(socket_->get(), generic(address), sizeof address) == -1) {
    fail(errno, socketPath_);
  }
}

SingleInstance::~SingleInstance() {
  if (socket_) {
    unlink(socketPath_.c_str());
  }
}

bool SingleInstance::tell(std::string_view word) const {
  const EventDescriptor socket(openSocket(), "socket");
  const sockaddr_un address = addressOf(socketPath_);
  return sendto(socket.get(), word.data(), word.size(), MSG_NOSIGNAL, generic(address),
                sizeof address) == static_cast<ssize_t>(word.size());
}

InstanceListener::InstanceListener(const SingleInstance& first,
                                   std::function<void(std::string_view)> hear)
    : socket_(first.socket()),
      hear_(std::move(hear)),
      arrivals_(first.socket().get(), QSocketNotifier::Read) {
  QObject::connect(&arrivals_, &QSocketNotifier::activated, &arrivals_, [this] { receive(); });
}

void InstanceListener::receive() {
  std::array<char, kLongestWord> word{};
  for (;;) {
    const ssize_t size = recv(socket_.get(), word.data(), word.size(), 0);
    if (size < 0) {
      return;
    }
    hear_(std::string_view(word.data(), static_cast<std::size_t>(size)));
  }
}

}  // namespace vel
