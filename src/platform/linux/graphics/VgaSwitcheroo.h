// The kernel's switch between graphics processors (Documentation/gpu/vga-switcheroo.rst).
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/linux/graphics/PciDevices.h"

namespace vel {

/// A graphics processor that takes part in the switching.
struct SwitchClient {
  bool discrete = false;
  bool active = false;   ///< the displays are switched to it
  bool dynamic = false;  ///< its driver powers it up and down by itself
  PciAddress address;

  bool operator==(const SwitchClient&) const = default;
};

using SwitchClients = std::vector<SwitchClient>;

/// Lines such as "1:DIS: :DynOff:0000:01:00.0". Sound functions ("DIS-Audio") and what is no such
/// line are left out, and so is "IGD" after the first: the kernel has it for all that it does not
/// know for discrete, such as a card that has come later.
SwitchClients parseSwitchClients(std::string_view text);

class VgaSwitcheroo {
 public:
  explicit VgaSwitcheroo(const std::filesystem::path& debugfs);

  /// Nothing when the file cannot be read: the machine has nothing to switch, or only the
  /// administrator may look.
  [[nodiscard]] std::optional<SwitchClients> clients() const;

  /// An empty command only finds out whether one could be sent. The kernel does not say whether it
  /// has done what it was told.
  [[nodiscard]] std::error_code send(std::string_view command) const;

  [[nodiscard]] const std::filesystem::path& file() const { return file_; }

 private:
  std::filesystem::path file_;
};

}  // namespace vel
