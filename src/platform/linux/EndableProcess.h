// One process that may be signalled, and no other that its number may come to mean.
#pragma once

#include <cstdint>
#include <optional>

#include "platform/linux/EndProblem.h"
#include "platform/linux/FileDescriptor.h"
#include "platform/linux/ProcessDirectory.h"

namespace vel {

/// Holds the process by a pidfd (man 2 pidfd_open), which stays with it: when it has ended and its
/// number has gone to another process, nothing is signalled.
class EndableProcess {
 public:
  /// The process of that number, if it has been started at `startTicks`. `directory` shares its
  /// pids with this process.
  EndableProcess(ProcessDirectory& directory, std::int32_t pid, std::uint64_t startTicks);

  /// Why it could not be signalled from the first.
  [[nodiscard]] std::optional<EndProblem> problem() const { return problem_; }

  /// Sends a signal. Nothing when that is done, which a process may take its time to follow.
  [[nodiscard]] std::optional<EndProblem> signal(int number) const;

 private:
  [[nodiscard]] std::optional<EndProblem> check(ProcessDirectory& directory, std::int32_t pid,
                                                std::uint64_t startTicks) const;
  [[nodiscard]] bool hasEnded() const;

  FileDescriptor process_;
  std::optional<EndProblem> problem_;
};

}  // namespace vel
