// Which graphics processors the machine has, and word of a change of the one in use.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "gpu/GSGPUDelegate.h"

namespace vel {

/// What has been found out about the machine holds for the process: the devices are looked at once.
/// May be used on any thread.
class GSGPU {
 public:
  GSGPU() = delete;

  /// The names of the display controllers, in the machine's order; the kept list itself.
  static const std::vector<std::string>& getGPUNames();

  /// Nothing when there is none, or none that is known for one by its name.
  static std::optional<std::string> integratedGPUName();
  static std::optional<std::string> discreteGPUName();

  /// One of two families that have to be switched in their own ways.
  static bool isLegacyMachine();
  static bool is2010MacBookPro();

  /// The delegate, which is kept, replaces an earlier one. It hears of a change half a second after
  /// the display's event, when the driver's answer can be relied on.
  static void registerForGPUChangeNotifications(std::shared_ptr<GSGPUDelegate> delegate);

  /// A change that is on its way to the delegate may still reach it, none that comes later does.
  static void unRegisterForGPUChangeNotifications();

  /// Forgets delegate and findings, as a new process has none: for whoever installs another
  /// platform.
  static void forget();
};

}  // namespace vel
