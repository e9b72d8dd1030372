// Where the module finds the machine and the host.
#pragma once

#include <string>
#include <vector>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Clock.h"
#include "platform/foundation/Locale.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/Queue.h"
#include "platform/graphics/Displays.h"
#include "platform/graphics/SwitchingDriver.h"
#include "platform/kernel/Kernel.h"
#include "platform/windowing/Nib.h"
#include "platform/windowing/UserNotifications.h"
#include "platform/windowing/Workspace.h"

namespace vel {

/// References to everything that the module may use of its surroundings, one set per process. What
/// they refer to belongs to whoever installs the platform.
struct Platform {
  Kernel& kernel;
  SwitchingDriver& switchingDriver;
  Displays& displays;
  Clock& clock;
  NibLoader& nibLoader;
  Workspace& workspace;
  UserNotificationCenter& userNotificationCenter;  ///< the default one
  NotificationCenter& notificationCenter;          ///< the default one
  Queue& mainQueue;
  Queue& globalQueue;
  const Locale& locale;
  const Bundle& mainBundle;            ///< the host's
  std::vector<std::string> arguments;  ///< the host process's, its name first

  /// The installed platform. To call it while none is installed is a programming error.
  static Platform& current();
};

/// Installs a platform for its own lifetime: a host for the life of the process, a test for one
/// case.
class PlatformInstallation {
 public:
  explicit PlatformInstallation(Platform& platform);
  ~PlatformInstallation();
  PlatformInstallation(const PlatformInstallation&) = delete;
  PlatformInstallation& operator=(const PlatformInstallation&) = delete;

 private:
  Platform* previous_;
};

}  // namespace vel
