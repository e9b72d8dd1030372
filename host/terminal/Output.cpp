#include "host/terminal/Output.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <string>
#include <system_error>

namespace vel {
namespace {

constexpr int kPause = 20;  // ms

/// A terminal that is ready has room for one byte and blocks whoever writes more, so it is opened
/// anew to be written without blocking: a flag of the file as it is would be everybody's.
int openOwn(int descriptor, bool isTerminal) {
  if (isTerminal) {
    const std::string path = "/proc/self/fd/" + std::to_string(descriptor);
    const int own = open(path.c_str(), O_WRONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
    if (own != -1) {
      return own;
    }
  }
  return fcntl(descriptor, F_DUPFD_CLOEXEC, 0);
}

}  // namespace

Output::Output(int descriptor, int interrupt)
    : interrupt_(interrupt),
      isTerminal_(isatty(descriptor) == 1),
      file_(openOwn(descriptor, isTerminal_), "standard output") {}

void Output::write(std::string_view text) const {
  while (!text.empty() && waitForReader()) {
    // A pipe that is ready takes this much without blocking (man 7 pipe).
    const std::size_t size = std::min(text.size(), std::size_t{PIPE_BUF});
    const ssize_t written = ::write(file_.get(), text.data(), size);
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EPIPE || (errno == EIO && isTerminal_)) {
      throw OutputClosed();
    } else if (errno == EAGAIN) {
      if (!pause()) {
        return;
      }
    } else if (errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "standard output");
    }
  }
}

bool Output::waitForReader() const {
  std::array<pollfd, 2> descriptors{{{file_.get(), POLLOUT, 0}, {interrupt_, POLLIN, 0}}};
  while (poll(descriptors.data(), descriptors.size(), -1) == -1 && errno == EINTR) {
  }
  return descriptors[0].revents != 0;
}

/// For a terminal that calls itself ready but has no room for a line's end, which is two bytes.
/// False if `interrupt` is readable.
bool Output::pause() const {
  pollfd interrupt{interrupt_, POLLIN, 0};
  return poll(&interrupt, 1, kPause) != 1;
}

}  // namespace vel
