#include "host/session/EndWords.h"

#include <algorithm>
#include <cstddef>
#include <iterator>
#include <optional>

namespace vel {
namespace {

constexpr std::size_t kMostFailures = 3;

/// The texts are keys.
struct Questions {
  const char* one;
  const char* two;
  const char* more;
  const char* rest;
  const char* moreRest;
};

constexpr Questions kEndQuestions{
    "End “%1” (process %2 of %3)?", "End “%1” and the process it started?",
    "End “%1” and the %2 processes it started?",
    "“%1” has started another process meanwhile. End it as well?",
    "“%1” has started %2 more processes meanwhile. End them as well?"};
constexpr Questions kForceQuestions{
    "Force “%1” (process %2 of %3) to end?", "Force “%1” and the process it started to end?",
    "Force “%1” and the %2 processes it started to end?",
    "“%1” has started another process meanwhile. Force it to end as well?",
    "“%1” has started %2 more processes meanwhile. Force them to end as well?"};

const char* sentenceOf(EndProblem problem) {
  switch (problem) {
    case EndProblem::endedAlready:
      return "“%1” (process %2) has ended already.";
    case EndProblem::isAnother:
      return "Process %2 is no longer the “%1” that was shown.";
    case EndProblem::kernelThread:
      return "“%1” (process %2) is a part of the kernel and cannot be ended.";
    case EndProblem::notPermitted:
      return "You are not permitted to end “%1” (process %2).";
    case EndProblem::notOfThisHost:
      return "“%1” (process %2) runs on another system or in another container and cannot be ended "
             "from here.";
    case EndProblem::unsupported:
      return "This system has no safe way to end “%1” (process %2).";
    case EndProblem::failed:
      break;
  }
  return "“%1” (process %2) could not be ended.";
}

/// In one pass, as a value may hold what looks like a place.
std::string filled(std::string_view text, std::initializer_list<std::string_view> values) {
  std::string result;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const std::size_t place =
        text[i] == '%' && i + 1 < text.size() ? static_cast<std::size_t>(text[i + 1] - '1') : 9;
    if (place < values.size()) {
      result += *std::next(values.begin(), static_cast<std::ptrdiff_t>(place));
      ++i;
    } else {
      result += text[i];
    }
  }
  return result;
}

}  // namespace

std::string EndWords::text(const char* key, std::initializer_list<std::string_view> values) const {
  return filled(translate_(key), values);
}

std::string EndWords::heading(const Application& application) const {
  const std::string pid = std::to_string(application.pid());
  switch (application.size()) {
    case 1:
      return application.name() + " (" + pid + ")";
    case 2:
      return text("%1 (%2) and the process it started", {application.name(), pid});
    default:
      return text("%1 (%2) and the %3 processes it started",
                  {application.name(), pid, std::to_string(application.size() - 1)});
  }
}

std::string EndWords::question(const Application& application, Way way) const {
  const Questions& questions = way == Way::end ? kEndQuestions : kForceQuestions;
  const std::size_t size = application.size();
  if (application.isRest()) {
    return text(size == 1 ? questions.rest : questions.moreRest,
                {application.name(), std::to_string(size)});
  }
  if (size == 1) {
    return text(questions.one,
                {application.name(), std::to_string(application.pid()), application.user()});
  }
  return text(size == 2 ? questions.two : questions.more,
              {application.name(), std::to_string(size - 1)});
}

std::string EndWords::first(const Application& application) const {
  return application.size() == 1 || application.isRest()
             ? std::string()
             : text("“%1” is process %2 of %3.",
                    {application.name(), std::to_string(application.pid()), application.user()});
}

std::string EndWords::busiest(const Application& application) const {
  const std::optional<ApplicationProcess> process = application.busiest();
  return !process || (application.size() == 1 && !application.isRest())
             ? std::string()
             : text("Busiest: “%1” (process %2).", {process->name, std::to_string(process->pid)});
}

std::string EndWords::consequence(const Application& application, Way way) const {
  const bool one = application.size() == 1;
  if (application.hasThisProcess()) {
    return text(one ? "It is Velbar itself, which then quits."
                    : "Velbar itself is among them and then quits.");
  }
  if (way == Way::force) {
    return text(one ? "It ends at once. What it has not saved is lost."
                    : "They end at once. What they have not saved is lost.");
  }
  if (one && application.isShell()) {
    return text("It is told that its terminal closes.");
  }
  return text(one ? "It is asked to quit and can save its work first."
                  : "They are asked to quit and can save their work first.");
}

std::vector<std::string> EndWords::failures(
    const std::vector<Application::Failure>& failures) const {
  std::vector<std::string> lines;
  for (const auto& failure : failures) {
    if (lines.size() == kMostFailures) {
      lines.push_back(text("and %1 more", {std::to_string(failures.size() - kMostFailures)}));
      break;
    }
    lines.push_back(text(sentenceOf(failure.problem), {failure.name, std::to_string(failure.pid)}));
  }
  return lines;
}

}  // namespace vel
