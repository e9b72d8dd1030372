#include "host/StandardFiles.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <system_error>

namespace vel {

void prepareStandardFiles() {
  (void)std::signal(SIGPIPE, SIG_IGN);
  for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    if (fcntl(descriptor, F_GETFD) == -1) {
      open("/dev/null", O_RDWR);
    }
  }
}

void requireStandardOutput() {
  if (fcntl(STDOUT_FILENO, F_GETFD) == -1) {
    throw std::system_error(errno, std::generic_category(), "standard output");
  }
}

}  // namespace vel
