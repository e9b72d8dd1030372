#include "host/session/SwitchingHint.h"

namespace vel {
namespace {

/// Of one kind of problem: "%1" stands for the flag, "%2" for the file, "%3" for the error.
struct Wording {
  const char* report;
  const char* explanation;  ///< the key of the user's text
};

Wording wordingOf(const SwitchingProblem& problem) {
  switch (problem.kind) {
    case SwitchingProblem::Kind::notPermitted:
      return {"%1: %2: %3; root, or a rule that lets a group of yours write it, is needed",
              "%1: it takes root, or a rule that lets a group of yours write %2."};
    case SwitchingProblem::Kind::notSupported:
      return {"%1: %2: %3; it takes a kernel with vga_switcheroo",
              "%1: it takes a kernel with vga_switcheroo, for %2."};
    case SwitchingProblem::Kind::notDynamic:
      break;
  }
  // Neither says that the power is on: the switch can have turned it off.
  if (problem.file.filename() == "control") {
    return {
        "%1: %2: the kernel is to leave the discrete graphics processor's power on; root can "
        "write \"auto\" there",
        "%1: the kernel is to leave the discrete processor’s power on. Root can write “auto” "
        "to %2."};
  }
  return {
      "%1: %2: the driver of the discrete graphics processor does not power it up and down by "
      "itself",
      "%1: the discrete processor’s driver does not power it up and down by itself (%2)."};
}

Wording noEffect(bool isSwitchable) {
  if (isSwitchable) {
    return {"%1: has no effect until the preferences show the graphics processor in use",
            "%1: has no effect until the preferences show the graphics processor in use."};
  }
  return {"%1: this machine does not have two graphics processors to switch between",
          "%1: it takes two graphics processors."};
}

void fill(std::string& text, std::string_view place, std::string_view value) {
  if (const auto position = text.find(place); position != std::string::npos) {
    text.replace(position, place.size(), value);
  }
}

std::string filled(std::string_view wording, const SwitchingProblem& problem,
                   std::string_view flag) {
  std::string text(wording);
  fill(text, "%1", flag);
  fill(text, "%3", problem.error.message());
  // Last, as it may hold what looks like another place.
  fill(text, "%2", problem.file.native());
  return text;
}

SwitchingHint hintOf(const Wording& wording, const SwitchingProblem& problem, std::string_view flag,
                     const Bundle* hostBundle) {
  const auto localized = [hostBundle](std::string_view english) {
    return hostBundle != nullptr ? hostBundle->localizedString(english) : english;
  };
  return {filled(wording.report, problem, flag),
          {.title = std::string(localized("Graphics mode not set")),
           .informativeText = filled(localized(wording.explanation), problem, flag),
           .actionButtonTitle = {}}};
}

}  // namespace

SwitchingHint switchingHint(const SwitchingProblem& problem, std::string_view flag,
                            const Bundle* hostBundle) {
  return hintOf(wordingOf(problem), problem, flag, hostBundle);
}

SwitchingHint noEffectHint(bool isSwitchable, std::string_view flag, const Bundle* hostBundle) {
  return hintOf(noEffect(isSwitchable), {}, flag, hostBundle);
}

}  // namespace vel
