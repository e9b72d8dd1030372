// The processes of a row of the list, which the user may end together.
#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "platform/linux/ApplicationProcess.h"
#include "platform/linux/EndProblem.h"
#include "platform/linux/EndableProcess.h"
#include "platform/linux/LinuxKernel.h"

namespace vel {

/// What the user is asked about, and that alone, is ended: what is started after the question is
/// asked about again. No process is held open in between, as there may be more of them than
/// descriptors: each is told by its number and start.
class EndableApplication {
 public:
  enum class Way : std::uint8_t {
    end,   ///< by SIGTERM; a shell that controls jobs by what a closing terminal sends
    force  ///< by SIGKILL
  };

  /// A process that could not be ended.
  struct Failure {
    std::string name;  ///< any bytes but NUL
    std::int64_t pid = 0;
    EndProblem problem = EndProblem::failed;
  };

  using Opened = std::variant<EndableApplication, EndProblem>;

  /// The row that is named after that process, if it was started before `shownAt` (CLOCK_BOOTTIME).
  /// Takes a new reading. `kernel` outlives what is returned.
  static Opened open(LinuxKernel& kernel, std::int64_t pid, std::chrono::nanoseconds shownAt);

  /// The row's, any bytes but NUL.
  [[nodiscard]] const std::string& name() const { return first_.name; }
  [[nodiscard]] std::int32_t pid() const { return first_.pid; }
  /// The login name of the first process's effective user, or the number of one without a name.
  [[nodiscard]] const std::string& user() const { return user_; }

  /// Those to be ended, at least one.
  [[nodiscard]] std::size_t size() const { return processes_.size(); }
  /// The one of them that has used most CPU time lately; none when none has used any.
  [[nodiscard]] std::optional<ApplicationProcess> busiest() const;
  /// Whether the first of them is a shell that controls jobs.
  [[nodiscard]] bool isShell() const {
    return !processes_.empty() && processes_.front().controlsJobs;
  }
  /// Whether this very program is one of them.
  [[nodiscard]] bool hasThisProcess() const;
  /// Whether they are those started while the others were asked about.
  [[nodiscard]] bool isRest() const { return isRest_; }

  /// Signals each. Nothing is said of those that have ended by themselves, unless all have.
  [[nodiscard]] std::vector<Failure> end(Way way);

  /// To be asked for shortly after `end`: what has been started since the user was asked, and has
  /// not ended with the rest. Has a size of 0 where there is nothing.
  [[nodiscard]] EndableApplication startedMeanwhile();

 private:
  EndableApplication(LinuxKernel& kernel, std::vector<ApplicationProcess> processes);

  void findStarted();
  [[nodiscard]] std::string nameOf(const ApplicationProcess& process) const;
  [[nodiscard]] EndableProcess hold(const ApplicationProcess& process) const;
  [[nodiscard]] std::optional<EndProblem> endOne(const ApplicationProcess& process, Way way) const;

  LinuxKernel* kernel_;
  ApplicationProcess first_;
  std::string user_;
  std::vector<ApplicationProcess> processes_;  ///< in the order in which they are signalled
  std::vector<ApplicationProcess> started_;    ///< since the question
  std::set<std::pair<std::int32_t, std::uint64_t>> known_;  ///< all of both, by pid and start
  bool isRest_ = false;
};

}  // namespace vel
