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
#include "platform/Platform.h"
#include "platform/foundation/GlobalQueue.h"
#include "platform/foundation/MainQueue.h"
#include "platform/linux/LinuxKernel.h"

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
};

/// The loaded module with everything around it. One at a time in a process.
class ModuleSession {
 public:
  /// Throws std::runtime_error when the module cannot be loaded; faults that cost only texts are
  /// reported under `program`'s name. `hostBundle` may be null; it and `locale` outlive the
  /// session.
  ModuleSession(const char* program, const HostOptions& options, std::vector<std::string> arguments,
                const Locale& locale, const Bundle* hostBundle, const FrontEnd& frontEnd);

  /// Lets what the user has changed last still reach the store.
  ~ModuleSession();
  ModuleSession(const ModuleSession&) = delete;
  ModuleSession& operator=(const ModuleSession&) = delete;

  // Start the module in one of its two modes. Throw std::runtime_error naming the nib and what is
  // wrong with it.
  void initMainApp();
  void initNCApp();

  [[nodiscard]] ModulePrincipal& module() { return *module_; }
  [[nodiscard]] const Bundle& moduleBundle() const { return loader_.bundle(); }
  [[nodiscard]] LinuxKernel& kernel() { return kernel_; }
  [[nodiscard]] WakeEvent& wake() { return wake_; }
  [[nodiscard]] MainQueue& mainQueue() { return mainQueue_; }

 private:
  void requireSoundNibs() const;

  BundleLoader loader_;
  LinuxKernel kernel_;
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
