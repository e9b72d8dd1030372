// The machine's display controllers: which are integrated, which have displays to drive.
#pragma once

#include <filesystem>
#include <optional>
#include <vector>

#include "platform/linux/graphics/PciDevices.h"
#include "platform/linux/graphics/VgaSwitcheroo.h"

namespace vel {

struct DisplayController {
  PciDevice device;
  bool integrated = false;

  /// Whether a connector of its card shows a picture.
  [[nodiscard]] bool drivesDisplay() const;

  /// Whether the firmware has shown its pictures on it.
  [[nodiscard]] bool isBootDisplay() const;

  /// Says "auto" where the kernel may power it down, "on" where it may not
  /// (Documentation/ABI/testing/sysfs-devices-power).
  [[nodiscard]] std::filesystem::path powerControl() const;
};

/// In the order of their addresses, none where there is no PCI. The kernel's own word about one,
/// among `clients`, goes before what its place and make tell.
std::vector<DisplayController> findDisplayControllers(const std::filesystem::path& sys,
                                                      const SwitchClients& clients);

}  // namespace vel
