// The devices on the PCI buses, as sysfs has them (Documentation/ABI/testing/sysfs-bus-pci).
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

namespace vel {

struct PciAddress {
  std::uint32_t domain = 0;  ///< more than 16 bits behind some storage controllers
  std::uint8_t bus = 0;
  std::uint8_t slot = 0;
  std::uint8_t function = 0;

  bool operator==(const PciAddress&) const = default;
  bool operator<(const PciAddress& other) const {
    return std::tie(domain, bus, slot, function) <
           std::tie(other.domain, other.bus, other.slot, other.function);
  }
};

/// "0000:01:00.0", as the kernel names a device everywhere.
std::optional<PciAddress> parsePciAddress(std::string_view text);

/// Vendor and model of a device; 0 where it cannot be read.
struct PciId {
  std::uint32_t vendor = 0;
  std::uint32_t device = 0;

  bool operator==(const PciId&) const = default;
  bool operator<(const PciId& other) const {
    return std::tie(vendor, device) < std::tie(other.vendor, other.device);
  }
};

struct PciDevice {
  PciAddress address;
  std::filesystem::path directory;

  [[nodiscard]] PciId id() const;
  /// The upper byte of the class code; nothing when it cannot be read.
  [[nodiscard]] std::optional<std::uint32_t> baseClass() const;
};

/// The base class of display controllers.
constexpr std::uint32_t kPciDisplay = 0x03;

/// In the order of their addresses. Nothing when the directory cannot be listed.
std::optional<std::vector<PciDevice>> listPciDevices(const std::filesystem::path& sys);

/// A file of one line, without its newline.
std::optional<std::string> readAttribute(const std::filesystem::path& file);

}  // namespace vel
