#include "host/terminal/Output.h"

#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <system_error>

namespace vel {

Output::Output(int descriptor, int interrupt)
    : descriptor_(descriptor), interrupt_(interrupt), isTerminal_(isatty(descriptor) == 1) {}

void Output::write(std::string_view text) const {
  while (!text.empty() && waitForReader()) {
    // A pipe that is ready takes this much without blocking (man 7 pipe).
    const std::size_t size = std::min(text.size(), std::size_t{PIPE_BUF});
    const ssize_t written = ::write(descriptor_, text.data(), size);
    if (written >= 0) {
      text.remove_prefix(static_cast<std::size_t>(written));
    } else if (errno == EPIPE || (errno == EIO && isTerminal_)) {
      throw OutputClosed();
    } else if (errno != EINTR && errno != EAGAIN) {
      throw std::system_error(errno, std::generic_category(), "standard output");
    }
  }
}

bool Output::waitForReader() const {
  std::array<pollfd, 2> descriptors{{{descriptor_, POLLOUT, 0}, {interrupt_, POLLIN, 0}}};
  while (poll(descriptors.data(), descriptors.size(), -1) == -1 && errno == EINTR) {
  }
  return descriptors[0].revents != 0;
}

}  // namespace vel
