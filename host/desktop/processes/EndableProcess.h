// One process that the user may end, and no other that its number may come to mean.
#pragma once

#include <sys/types.h>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "host/EventDescriptor.h"
#include "host/desktop/processes/EndProblem.h"

namespace vel {

/// Holds the process by a pidfd (man 2 pidfd_open), which stays with it: when it has ended and its
/// number has gone to another process, nothing is signalled.
class EndableProcess {
 public:
  using Opened = std::variant<std::shared_ptr<const EndableProcess>, EndProblem>;

  /// The process of that number in this program's pid namespace, if it is the one that was shown:
  /// its command name is `name`, and it was started before `shownAt` (CLOCK_BOOTTIME).
  static Opened open(std::int64_t pid, std::string_view name, std::chrono::nanoseconds shownAt);

  [[nodiscard]] pid_t pid() const { return pid_; }
  /// Any bytes.
  [[nodiscard]] const std::string& name() const { return name_; }
  /// The login name of its effective user, or the number of one without a name.
  [[nodiscard]] const std::string& user() const { return user_; }

  /// Sends SIGTERM or SIGKILL. Nothing when that is done, which a process may take its time to
  /// follow.
  [[nodiscard]] std::optional<EndProblem> signal(int number) const;

 private:
  EndableProcess(int descriptor, pid_t pid, std::string_view name);

  [[nodiscard]] std::optional<EndProblem> check(std::chrono::nanoseconds shownAt);
  [[nodiscard]] bool hasEnded() const;

  const EventDescriptor descriptor_;
  const pid_t pid_;
  const std::string name_;
  std::string user_;
};

}  // namespace vel
