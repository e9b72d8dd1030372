// What the user is told when the switching mode asked for on the command line does not hold, or has
// no effect.
#pragma once

#include <string>
#include <string_view>

#include "platform/foundation/Bundle.h"
#include "platform/linux/graphics/LinuxSwitchingDriver.h"
#include "platform/windowing/UserNotifications.h"

namespace vel {

struct SwitchingHint {
  std::string report;  ///< for standard error, in English
  UserNotification notification;
};

/// `flag` asked for the mode. Without the host's bundle both are English.
SwitchingHint switchingHint(const SwitchingProblem& problem, std::string_view flag,
                            const Bundle* hostBundle);

/// Of a mode that is not set at all: `isSwitchable` tells whether there are two graphics
/// processors.
SwitchingHint noEffectHint(bool isSwitchable, std::string_view flag, const Bundle* hostBundle);

}  // namespace vel
