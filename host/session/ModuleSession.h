// What every front does before its first refresh: the machine, the host's texts, the module.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "host/BundleLoader.h"
#include "host/HostOptions.h"
#include "host/WakeEvent.h"
#include "host/session/NoUserNotificationCenter.h"
#include "host/session/SwitchingHint.h"
#include "platform/Platform.h"
#include "platform/foundation/GlobalQueue.h"
#include "platform/foundation/MainQueue.h"
#include "platform/linux/LinuxKernel.h"
#include "platform/linux/graphics/LinuxDisplays.h"
#include "platform/linux/graphics/LinuxSwitchingDriver.h"

namespace vel {

/// The host's own bundle, its texts. What is wrong with it is reported; without it texts are their
/// keys.
std::optional<Bundle> openHostBundle(const char* program, const Locale& locale);

/// How the front shows views.
struct FrontEnd {
  /// `problem` takes what is wrong with a nib.
  std::function<std::unique_ptr<NibLoader>(std::function<void(std::string)> problem)> nibLoader;
  Workspace& workspace;
  UserNotificationCenter* userNotificationCenter = nullptr;  ///< none: nothing is shown to the user
  /// Takes why the switching mode asked for has no effect, at the start, or does not hold, once it
  /// is set. On any thread.
  std::function<void(const SwitchingHint& hint)> switchingHint;
};

/// The loaded module with everything around it. One at a time in a process.
class ModuleSession {
 public:
  /// Throws std::runtime_error when the module cannot be loaded; faults that cost only texts are
  /// reported under `program`'s name. `hostBundle` may be null; it and `locale` outlive the
  /// session.
  ModuleSession(const char* program, const HostOptions& options, std::vector<std::string> arguments,
                const Locale& locale, const Bundle* hostBundle, const FrontEnd& frontEnd);

  /// Lets what the user has changed last still reach the store. The module's sleeps end early.
  ~ModuleSession();
  ModuleSession(const ModuleSession&) = delete;
  ModuleSession& operator=(const ModuleSession&) = delete;

  // Start the module in one of its two modes. Throw std::runtime_error naming the nib and what is
  // wrong with it.
  void initMainApp();
  void initNCApp();

  /// Gives the module its settings. The user is told if with them it leaves alone the switching
  /// mode that was asked for. To be called once, after `initMainApp`.
  void setVelPreferencesDefault(PreferencesStore* store);

  [[nodiscard]] ModulePrincipal& module() { return *module_; }
  [[nodiscard]] const Bundle& moduleBundle() const { return loader_.bundle(); }
  [[nodiscard]] LinuxKernel& kernel() { return kernel_; }
  [[nodiscard]] WakeEvent& wake() { return wake_; }
  [[nodiscard]] MainQueue& mainQueue() { return mainQueue_; }

 private:
  void requireSoundNibs() const;

  const std::string switchingFlag_;  ///< the one that holds; empty without any
  const Bundle* const hostBundle_;
  const std::function<void(const SwitchingHint&)> tellHint_;
  BundleLoader loader_;
  LinuxKernel kernel_;
  LinuxSwitchingDriver switchingDriver_;
  LinuxDisplays displays_;
  SystemClock clock_;
  NotificationCenter notificationCenter_;
  WakeEvent wake_;
  MainQueue mainQueue_{[this] { wake_.wake(); }};
  std::vector<std::string> nibProblems_;
  std::unique_ptr<NibLoader> nibLoader_;
  NoUserNotificationCenter noUserNotificationCenter_;
  GlobalQueue globalQueue_;
  Platform platform_;
  PlatformInstallation installation_;
  std::unique_ptr<ModulePrincipal> module_;
};

}  // namespace vel
