#include "host/desktop/processes/EndableProcess.h"

#include <poll.h>
#include <pwd.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <fstream>
#include <limits>
#include <sstream>
#include <vector>

namespace vel {
namespace {

constexpr unsigned kKernelThread = 0x00200000;  // PF_KTHREAD of include/linux/sched.h

struct Stat {
  std::string name;
  char state = 0;
  unsigned flags = 0;
  std::uint64_t start = 0;  ///< in clock ticks of CLOCK_BOOTTIME
};

std::string readProc(pid_t pid, const char* file) {
  std::ifstream stream("/proc/" + std::to_string(pid) + '/' + file);
  return {std::istreambuf_iterator<char>(stream), {}};
}

/// man 5 proc. The name is the field 2 and may hold parentheses and spaces itself.
std::optional<Stat> parseStat(const std::string& text) {
  const std::size_t opening = text.find('(');
  const std::size_t closing = text.rfind(')');
  if (opening == std::string::npos || closing == std::string::npos || closing < opening) {
    return std::nullopt;
  }
  Stat stat;
  stat.name = text.substr(opening + 1, closing - opening - 1);
  std::istringstream fields(text.substr(closing + 1));
  fields >> stat.state;
  std::string skipped;
  for (int field = 4; field < 22; ++field) {
    field == 9 ? fields >> stat.flags : fields >> skipped;
  }
  fields >> stat.start;
  return fields ? std::optional(stat) : std::nullopt;
}

std::optional<uid_t> effectiveUser(const std::string& status) {
  constexpr std::string_view kUid = "\nUid:";
  const std::size_t line = status.find(kUid);
  if (line == std::string::npos) {
    return std::nullopt;
  }
  uid_t real = 0;
  uid_t effective = 0;
  std::istringstream numbers(status.substr(line + kUid.size()));
  numbers >> real >> effective;
  return numbers ? std::optional(effective) : std::nullopt;
}

std::string userName(uid_t user) {
  passwd entry = {};
  passwd* found = nullptr;
  std::vector<char> buffer(1024);
  while (getpwuid_r(user, &entry, buffer.data(), buffer.size(), &found) == ERANGE) {
    buffer.resize(buffer.size() * 2);
  }
  return found != nullptr ? found->pw_name : std::to_string(user);
}

std::uint64_t clockTicks(std::chrono::nanoseconds time) {
  const auto perSecond = std::uint64_t(sysconf(_SC_CLK_TCK));
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  return std::uint64_t(seconds.count()) * perSecond +
         std::uint64_t((time - seconds).count()) * perSecond / 1'000'000'000;
}

/// Of pidfd_open and pidfd_send_signal.
EndProblem problemOf(int error) {
  switch (error) {
    case ESRCH:
    case EINVAL:  // the number of a thread now, not of a process
    case ENOENT:  // the same, since Linux 6.15
      return EndProblem::endedAlready;
    case ENOSYS:
      return EndProblem::unsupported;
    default:
      return EndProblem::failed;
  }
}

}  // namespace

EndableProcess::EndableProcess(int descriptor, pid_t pid, std::string_view name)
    : descriptor_(descriptor, "pidfd_open"), pid_(pid), name_(name) {}

EndableProcess::Opened EndableProcess::open(std::int64_t pid, std::string_view name,
                                            std::chrono::nanoseconds shownAt) {
  if (pid < 1 || pid > std::numeric_limits<pid_t>::max()) {
    return EndProblem::endedAlready;
  }
  // By number, as the C library has no function for it before version 2.36.
  const long descriptor = syscall(SYS_pidfd_open, pid_t(pid), 0U);
  if (descriptor == -1) {
    // It needs no permission: only a sandbox denies it.
    return errno == EPERM ? EndProblem::unsupported : problemOf(errno);
  }
  const std::shared_ptr<EndableProcess> process(
      new EndableProcess(int(descriptor), pid_t(pid), name));
  // Only now, so that what is checked is what is held, or has ended since.
  if (const auto problem = process->check(shownAt)) {
    return *problem;
  }
  return process;
}

std::optional<EndProblem> EndableProcess::check(std::chrono::nanoseconds shownAt) {
  const auto stat = parseStat(readProc(pid_, "stat"));
  const auto user = effectiveUser(readProc(pid_, "status"));
  if (!stat || !user || hasEnded()) {
    return EndProblem::endedAlready;
  }
  if ((stat->flags & kKernelThread) != 0) {
    return EndProblem::kernelThread;
  }
  // A start within the very tick may have been after it.
  if (stat->name != name_ || stat->start >= clockTicks(shownAt)) {
    return EndProblem::isAnother;
  }
  user_ = userName(*user);
  return std::nullopt;
}

/// Also when its parent has not yet asked for its end, when a signal would seem to reach it.
bool EndableProcess::hasEnded() const {
  pollfd end{descriptor_.get(), POLLIN, 0};
  return poll(&end, 1, 0) == 1;
}

std::optional<EndProblem> EndableProcess::signal(int number) const {
  if (hasEnded()) {
    return EndProblem::endedAlready;
  }
  if (syscall(SYS_pidfd_send_signal, descriptor_.get(), number, nullptr, 0U) == 0) {
    return std::nullopt;
  }
  return errno == EPERM ? EndProblem::notPermitted : problemOf(errno);
}

}  // namespace vel
