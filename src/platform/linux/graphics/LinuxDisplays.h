// The display controllers on the PCI buses, and the kernel's events about displays.
#pragma once

#include <filesystem>
#include <map>
#include <mutex>
#include <string>
#include <vector>

#include "platform/graphics/Displays.h"
#include "platform/linux/graphics/DisplayEvents.h"
#include "platform/linux/graphics/PciDevices.h"

namespace vel {

class LinuxDisplays : public Displays {
 public:
  /// `names` is a file of the PCI database, the machine's own if it is empty.
  explicit LinuxDisplays(std::filesystem::path sys, std::filesystem::path names = {},
                         const DisplayEventSource::Timing& timing = {});

  /// A device keeps its number whatever comes and goes.
  std::optional<std::vector<Device>> matchingServices(std::string_view serviceClass) override;
  std::optional<Properties> properties(Device device) override;
  void registerReconfigurationCallback(ReconfigurationCallback callback, void* userInfo) override;
  void removeReconfigurationCallback(ReconfigurationCallback callback, void* userInfo) override;

 private:
  Device numberOf(const PciDevice& device);
  const std::string& nameOf(const PciId& id);

  const std::filesystem::path sys_;
  const std::filesystem::path names_;
  std::mutex mutex_;
  /// All that have been found, by their numbers.
  std::vector<PciDevice> devices_;
  std::map<PciId, std::string> known_;
  DisplayEvents events_;
};

}  // namespace vel
