#include "platform/linux/graphics/DisplayControllers.h"

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <system_error>

namespace vel {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kVendorAti = 0x1002;
constexpr std::uint32_t kVendorAmd = 0x1022;
constexpr PciId kGeForce9400M = {.vendor = 0x10de, .device = 0x0863};

/// Whether `matches` holds for an entry whose name starts with `prefix`.
template <typename Matches>
bool anyEntry(const fs::path& directory, std::string_view prefix, Matches matches) {
  std::error_code error;
  fs::directory_iterator entry(directory, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    if (entry->path().filename().native().starts_with(prefix) && matches(entry->path())) {
      return true;
    }
  }
  return false;
}

bool shareSlot(const PciAddress& one, const PciAddress& other) {
  return one.domain == other.domain && one.bus == other.bus && one.slot == other.slot;
}

/// Beside their graphics, AMD's processors have others of their devices in the same slot, under the
/// vendor number of the processors. A card has the graphics' vendor number on all of its functions.
bool isPartOfProcessor(const PciDevice& device, const std::vector<PciDevice>& all) {
  return std::any_of(all.begin(), all.end(), [&device](const PciDevice& other) {
    return shareSlot(device.address, other.address) && other.id().vendor == kVendorAmd;
  });
}

bool isIntegrated(const PciDevice& device, const std::vector<PciDevice>& all,
                  const SwitchClients& clients) {
  const auto client = std::find_if(clients.begin(), clients.end(), [&device](const auto& each) {
    return each.address == device.address;
  });
  if (client != clients.end()) {
    return !client->discrete;
  }
  // As nouveau has it (nouveau_acpi.c): a card is behind a bridge.
  if (device.address.bus == 0) {
    return true;
  }
  const PciId id = device.id();
  // A chipset's, behind a bridge all the same; the kernel's gmux driver makes the exception too.
  return id == kGeForce9400M || (id.vendor == kVendorAti && isPartOfProcessor(device, all));
}

}  // namespace

bool DisplayController::drivesDisplay() const {
  // card0/card0-eDP-1/enabled (drivers/gpu/drm/drm_sysfs.c)
  return anyEntry(device.directory / "drm", "card", [](const fs::path& card) {
    const std::string connector = card.filename().native() + "-";
    return anyEntry(card, connector, [](const fs::path& directory) {
      return readAttribute(directory / "enabled") == "enabled";
    });
  });
}

bool DisplayController::isBootDisplay() const {
  return readAttribute(device.directory / "boot_vga") == "1";
}

fs::path DisplayController::powerControl() const {
  return device.directory / "power/control";
}

std::vector<DisplayController> findDisplayControllers(const fs::path& sys,
                                                      const SwitchClients& clients) {
  std::vector<DisplayController> controllers;
  const auto devices = listPciDevices(sys).value_or(std::vector<PciDevice>());
  for (const PciDevice& device : devices) {
    if (device.baseClass() == kPciDisplay) {
      controllers.push_back(
          {.device = device, .integrated = isIntegrated(device, devices, clients)});
    }
  }
  return controllers;
}

}  // namespace vel
