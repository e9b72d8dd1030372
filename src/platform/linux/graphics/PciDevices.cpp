#include "platform/linux/graphics/PciDevices.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "platform/linux/Scan.h"
#include "platform/linux/TextFile.h"

namespace vel {
namespace {

template <typename T>
bool takeHexadecimal(std::string_view& text, T& value) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
  if (error != std::errc{}) {
    return false;
  }
  text.remove_prefix(static_cast<std::size_t>(end - text.data()));
  return true;
}

/// "0x030000"
std::optional<std::uint32_t> readNumber(const std::filesystem::path& file) {
  const std::optional<std::string> line = readAttribute(file);
  std::string_view text = line ? std::string_view(*line) : std::string_view();
  std::uint32_t number = 0;
  if (!takeCharacter(text, '0') || !takeCharacter(text, 'x') || !takeHexadecimal(text, number) ||
      !text.empty()) {
    return std::nullopt;
  }
  return number;
}

}  // namespace

std::optional<PciAddress> parsePciAddress(std::string_view text) {
  PciAddress address;
  if (!takeHexadecimal(text, address.domain) || !takeCharacter(text, ':') ||
      !takeHexadecimal(text, address.bus) || !takeCharacter(text, ':') ||
      !takeHexadecimal(text, address.slot) || !takeCharacter(text, '.') ||
      !takeHexadecimal(text, address.function) || !text.empty()) {
    return std::nullopt;
  }
  return address;
}

PciId PciDevice::id() const {
  return {.vendor = readNumber(directory / "vendor").value_or(0),
          .device = readNumber(directory / "device").value_or(0)};
}

std::optional<std::uint32_t> PciDevice::baseClass() const {
  const std::optional<std::uint32_t> code = readNumber(directory / "class");
  return code ? std::optional(*code >> 16U) : std::nullopt;
}

std::optional<std::vector<PciDevice>> listPciDevices(const std::filesystem::path& sys) {
  std::vector<PciDevice> devices;
  std::error_code error;
  std::filesystem::directory_iterator entry(sys / "bus/pci/devices", error);
  for (; !error && entry != std::filesystem::directory_iterator(); entry.increment(error)) {
    if (const auto address = parsePciAddress(entry->path().filename().native())) {
      devices.push_back({.address = *address, .directory = entry->path()});
    }
  }
  if (error) {
    return std::nullopt;
  }
  std::sort(devices.begin(), devices.end(), [](const PciDevice& one, const PciDevice& other) {
    return one.address < other.address;
  });
  return devices;
}

std::optional<std::string> readAttribute(const std::filesystem::path& file) {
  TextFile text(file);
  const auto line = onlyLine(text.read().value_or(""));
  return line ? std::optional<std::string>(*line) : std::nullopt;
}

}  // namespace vel
