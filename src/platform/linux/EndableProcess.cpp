// One process that may be signalled, and no other that its number may come to mean.
#include "platform/linux/EndableProcess.h"

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <string_view>

#include "platform/linux/ProcPidStat.h"

namespace vel {

namespace {

/// By number, as the C library has no function for it before version 2.36.
int openPidfd(std::int32_t pid) {
  return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0U));
}

/// Of pidfd_open and pidfd_send_signal.
EndProblem endProblemOf(int error) {
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

EndableProcess::EndableProcess(ProcessDirectory& directory, std::int32_t pid,
                               std::uint64_t startTicks)
    : process_(openPidfd(pid)) {
  if (!process_.isOpen()) {
    // It needs no permission: only a sandbox denies it.
    problem_ = errno == EPERM ? EndProblem::unsupported : endProblemOf(errno);
    return;
  }
  // Only now, so that what is checked is what is held, or has ended since.
  problem_ = check(directory, pid, startTicks);
}

std::optional<EndProblem> EndableProcess::check(ProcessDirectory& directory, std::int32_t pid,
                                                std::uint64_t startTicks) const {
  FileDescriptor file;
  const std::optional<std::string_view> text =
      directory.open(file, pid, "stat") ? directory.read(file) : std::nullopt;
  const std::optional<ProcPidStat> stat = text ? parseProcPidStat(*text) : std::nullopt;
  if (!stat || stat->startTicks != startTicks || hasEnded()) {
    return EndProblem::endedAlready;
  }
  return stat->isKernelThread() ? std::optional(EndProblem::kernelThread) : std::nullopt;
}

/// Also when its parent has not yet asked for its end, when a signal would seem to reach it.
bool EndableProcess::hasEnded() const {
  pollfd end{process_.number(), POLLIN, 0};
  return ::poll(&end, 1, 0) == 1;
}

std::optional<EndProblem> EndableProcess::signal(int number) const {
  if (problem_) {
    return problem_;
  }
  if (hasEnded()) {
    return EndProblem::endedAlready;
  }
  if (::syscall(SYS_pidfd_send_signal, process_.number(), number, nullptr, 0U) == 0) {
    return std::nullopt;
  }
  return errno == EPERM ? EndProblem::notPermitted : endProblemOf(errno);
}

}  // namespace vel
