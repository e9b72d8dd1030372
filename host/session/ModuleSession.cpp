#include "host/session/ModuleSession.h"

#include <stdexcept>
#include <utility>

#include "host/InstalledFiles.h"
#include "host/Report.h"

namespace vel {

std::optional<Bundle> openHostBundle(const char* program, const Locale& locale) {
  std::vector<Bundle::Problem> problems;
  auto bundle = Bundle::open(installedPath(VEL_HOST_RESOURCES_DIR), locale, problems);
  for (const auto& problem : problems) {
    report(program, problem);
  }
  return bundle;
}

ModuleSession::ModuleSession(const char* program, const HostOptions& options,
                             std::vector<std::string> arguments, const Locale& locale,
                             const Bundle* hostBundle, const FrontEnd& frontEnd)
    : loader_(options.bundle.empty() ? installedPath(VEL_BUNDLE_DIR) : options.bundle, locale),
      kernel_(options.proc, options.sys),
      nibLoader_(frontEnd.nibLoader(
          [this](std::string problem) { nibProblems_.push_back(std::move(problem)); })),
      platform_{kernel_, clock_, *nibLoader_, frontEnd.workspace,
                frontEnd.userNotificationCenter != nullptr ? *frontEnd.userNotificationCenter
                                                           : noUserNotificationCenter_,
                notificationCenter_, mainQueue_, globalQueue_, locale,
                // Without a bundle of the host's, the module's is the only one there is.
                hostBundle != nullptr ? *hostBundle : loader_.bundle(), std::move(arguments)},
      installation_(platform_) {
  for (const auto& problem : loader_.problems()) {
    report(program, problem);
  }
  module_ = loader_.createPrincipal();
}

ModuleSession::~ModuleSession() {
  globalQueue_.waitUntilIdle();
  mainQueue_.drain();
}

void ModuleSession::initMainApp() {
  module_->initMainApp();
  requireSoundNibs();
}

void ModuleSession::initNCApp() {
  module_->initNCApp();
  requireSoundNibs();
}

/// A module says nothing of it: it has no views then.
void ModuleSession::requireSoundNibs() const {
  if (!nibProblems_.empty()) {
    throw std::runtime_error(nibProblems_.front());
  }
}

}  // namespace vel
