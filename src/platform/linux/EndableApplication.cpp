// The processes of a row of the list, which the user may end together.
#include "platform/linux/EndableApplication.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <limits>

#include "platform/linux/ProcessDetails.h"

namespace vel {

namespace {

std::uint64_t clockTicks(std::chrono::nanoseconds time) {
  const auto perSecond = static_cast<std::uint64_t>(::sysconf(_SC_CLK_TCK));
  const auto seconds = std::chrono::floor<std::chrono::seconds>(time);
  return static_cast<std::uint64_t>(seconds.count()) * perSecond +
         static_cast<std::uint64_t>((time - seconds).count()) * perSecond / 1'000'000'000;
}

}  // namespace

EndableApplication::Opened EndableApplication::open(LinuxKernel& kernel, std::int64_t pid,
                                                    std::chrono::nanoseconds shownAt) {
  if (!kernel.sharesPids()) {
    return EndProblem::notOfThisHost;
  }
  if (pid < 1 || pid > std::numeric_limits<std::int32_t>::max()) {
    return EndProblem::endedAlready;
  }
  std::vector<ApplicationProcess> processes = kernel.application(static_cast<std::int32_t>(pid));
  if (processes.empty()) {
    // It may have become a part of another row.
    return kernel.process(static_cast<std::int32_t>(pid)) ? EndProblem::isAnother
                                                          : EndProblem::endedAlready;
  }
  EndableApplication application(kernel, std::move(processes));
  if (const auto problem = application.hold(application.first_).problem()) {
    return *problem;
  }
  // A start within the very tick may have been after it.
  if (application.first_.startTicks >= clockTicks(shownAt)) {
    return EndProblem::isAnother;
  }
  return application;
}

/// The first one first, lest it start others in the place of those that end; this process last, as
/// it would not come to signal the others.
EndableApplication::EndableApplication(LinuxKernel& kernel,
                                       std::vector<ApplicationProcess> processes)
    : kernel_(&kernel), first_(processes.front()), processes_(std::move(processes)) {
  first_.name = nameOf(first_);
  user_ = ProcessDetails(kernel.processDirectory()).user(first_.pid).value_or("-");
  std::stable_partition(
      processes_.begin(), processes_.end(),
      [own = kernel.ownPid()](const ApplicationProcess& process) { return process.pid != own; });
  for (const ApplicationProcess& process : processes_) {
    known_.emplace(process.pid, process.startTicks);
  }
}

std::optional<ApplicationProcess> EndableApplication::busiest() const {
  const auto most = std::max_element(processes_.begin(), processes_.end(),
                                     [](const ApplicationProcess& a, const ApplicationProcess& b) {
                                       return a.recentMicroseconds < b.recentMicroseconds;
                                     });
  if (most == processes_.end() || most->recentMicroseconds == 0) {
    return std::nullopt;
  }
  ApplicationProcess busiest = *most;
  busiest.name = nameOf(*most);
  return busiest;
}

/// As lists and alerts call it. Looked up for those only that are spoken of.
std::string EndableApplication::nameOf(const ApplicationProcess& process) const {
  return kernel_->processName(process.pid).value_or(process.name);
}

bool EndableApplication::hasThisProcess() const {
  return !processes_.empty() && processes_.back().pid == kernel_->ownPid();
}

std::vector<EndableApplication::Failure> EndableApplication::end(Way way) {
  findStarted();
  std::vector<Failure> failures;
  std::size_t ended = 0;
  for (const ApplicationProcess& process : processes_) {
    const std::optional<EndProblem> problem = endOne(process, way);
    if (problem == EndProblem::endedAlready) {
      ++ended;
    } else if (problem) {
      failures.push_back({nameOf(process), process.pid, *problem});
    }
  }
  if (ended == processes_.size()) {
    failures.push_back({first_.name, first_.pid, EndProblem::endedAlready});
  }
  return failures;
}

/// A shell does not heed SIGTERM while it waits for the user. When its terminal closes it ends, and
/// SIGCONT has it do so at once even if it is stopped.
std::optional<EndProblem> EndableApplication::endOne(const ApplicationProcess& process,
                                                     Way way) const {
  const EndableProcess held = hold(process);
  if (way == Way::force) {
    return held.signal(SIGKILL);
  }
  if (!process.controlsJobs) {
    return held.signal(SIGTERM);
  }
  const std::optional<EndProblem> problem = held.signal(SIGHUP);
  (void)held.signal(SIGCONT);
  return problem;
}

EndableProcess EndableApplication::hold(const ApplicationProcess& process) const {
  return {kernel_->processDirectory(), process.pid, process.startTicks};
}

EndableApplication EndableApplication::startedMeanwhile() {
  findStarted();
  std::erase_if(started_, [this](const ApplicationProcess& process) {
    return hold(process).problem() == EndProblem::endedAlready;
  });
  EndableApplication rest(*this);
  rest.processes_ = std::move(rest.started_);
  rest.started_.clear();
  rest.isRest_ = true;
  return rest;
}

void EndableApplication::findStarted() {
  for (ApplicationProcess& process : kernel_->application(first_.pid)) {
    if (process.pid == first_.pid && process.startTicks != first_.startTicks) {
      return;  // Another row, which comes first in itself.
    }
    if (known_.emplace(process.pid, process.startTicks).second) {
      started_.push_back(std::move(process));
    }
  }
}

}  // namespace vel
