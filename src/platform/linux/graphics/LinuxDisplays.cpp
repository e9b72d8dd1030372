#include "platform/linux/graphics/LinuxDisplays.h"

#include <algorithm>
#include <utility>

#include "platform/linux/graphics/PciNames.h"

namespace vel {
namespace {

constexpr std::string_view kPciServiceClass = "IOPCIDevice";

}  // namespace

LinuxDisplays::LinuxDisplays(std::filesystem::path sys, std::filesystem::path names,
                             const DisplayEventSource::Timing& timing)
    : sys_(std::move(sys)), names_(std::move(names)), events_(timing) {}

std::optional<std::vector<Displays::Device>> LinuxDisplays::matchingServices(
    std::string_view serviceClass) {
  if (serviceClass != kPciServiceClass) {
    return std::vector<Device>();
  }
  const auto found = listPciDevices(sys_);
  if (!found) {
    return std::nullopt;
  }
  const std::lock_guard lock(mutex_);
  std::vector<Device> numbers;
  for (const PciDevice& device : *found) {
    numbers.push_back(numberOf(device));
  }
  return numbers;
}

std::optional<Displays::Properties> LinuxDisplays::properties(Device device) {
  const std::lock_guard lock(mutex_);
  if (device >= devices_.size()) {
    return std::nullopt;
  }
  const auto baseClass = devices_[device].baseClass();
  if (!baseClass) {
    return std::nullopt;
  }
  if (*baseClass != kPciDisplay) {
    return Properties();
  }
  const std::string& name = nameOf(devices_[device].id());
  return Properties{{"IOName", "display"},
                    {"model", std::vector<std::uint8_t>(name.begin(), name.end())}};
}

Displays::Device LinuxDisplays::numberOf(const PciDevice& device) {
  auto known = std::find_if(devices_.begin(), devices_.end(),
                            [&device](const auto& each) { return each.address == device.address; });
  if (known == devices_.end()) {
    known = devices_.insert(known, device);
  }
  return static_cast<Device>(known - devices_.begin());
}

/// The database is read once for all display controllers that there are, as reading it is what
/// takes the time.
const std::string& LinuxDisplays::nameOf(const PciId& id) {
  if (!known_.contains(id)) {
    std::vector<PciId> ids{id};
    for (const PciDevice& device : devices_) {
      if (device.baseClass() == kPciDisplay) {
        ids.push_back(device.id());
      }
    }
    auto names = pciNames(names_, ids);
    for (std::size_t i = 0; i < ids.size(); ++i) {
      known_[ids[i]] = std::move(names[i]);
    }
  }
  return known_[id];
}

void LinuxDisplays::registerReconfigurationCallback(ReconfigurationCallback callback,
                                                    void* userInfo) {
  events_.add(callback, userInfo);
}

void LinuxDisplays::removeReconfigurationCallback(ReconfigurationCallback callback,
                                                  void* userInfo) {
  events_.remove(callback, userInfo);
}

}  // namespace vel
