#include "host/session/ModuleSession.h"

#include <stdexcept>
#include <utility>

#include "host/InstalledFiles.h"
#include "host/Report.h"
#include "platform/graphics/SwitchingFeatures.h"

namespace vel {
namespace {

std::filesystem::path debugfsOf(const HostOptions& options) {
  return options.debugfs.empty() ? options.sys / "kernel/debug" : options.debugfs;
}

std::string switchingFlag(const HostOptions& options) {
  const std::vector<std::string> flags = options.switchingFlags();
  return flags.empty() ? "" : flags.front();
}

}  // namespace

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
    : switchingFlag_(switchingFlag(options)),
      hostBundle_(hostBundle),
      tellHint_(frontEnd.switchingHint),
      loader_(options.bundle.empty() ? installedPath(VEL_BUNDLE_DIR) : options.bundle, locale),
      kernel_(options.proc, options.sys),
      switchingDriver_(options.sys, debugfsOf(options),
                       [this](const SwitchingProblem& problem) {
                         // The mode that the module sets by itself is a courtesy.
                         if (!switchingFlag_.empty()) {
                           tellHint_(switchingHint(problem, switchingFlag_, hostBundle_));
                         }
                       }),
      displays_(options.sys),
      nibLoader_(frontEnd.nibLoader(
          [this](std::string problem) { nibProblems_.push_back(std::move(problem)); })),
      platform_{kernel_, switchingDriver_, displays_, clock_, *nibLoader_, frontEnd.workspace,
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
  clock_.endSleeps();
  globalQueue_.waitUntilIdle();
  mainQueue_.drain();
  // Its tasks that are still queued need the platform.
  module_.reset();
  globalQueue_.waitUntilIdle();
}

void ModuleSession::initMainApp() {
  module_->initMainApp();
  requireSoundNibs();
}

void ModuleSession::initNCApp() {
  module_->initNCApp();
  requireSoundNibs();
}

void ModuleSession::setVelPreferencesDefault(PreferencesStore* store) {
  module_->setVelPreferencesDefault(store);
  if (!switchingFlag_.empty() && !switchingDriver_.hasBeenSet()) {
    const auto services = switchingDriver_.matchingServices(switching::kServiceClass);
    const bool isSwitchable = services && !services->empty();
    tellHint_(noEffectHint(isSwitchable, switchingFlag_, hostBundle_));
  }
}

/// A module says nothing of it: it has no views then.
void ModuleSession::requireSoundNibs() const {
  if (!nibProblems_.empty()) {
    throw std::runtime_error(nibProblems_.front());
  }
}

}  // namespace vel
