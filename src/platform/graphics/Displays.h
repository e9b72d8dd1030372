// The display controllers of the machine, and what happens to its displays.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vel {

/// May be used on any thread. No operation throws.
class Displays {
 public:
  using Device = std::uint32_t;
  /// A text, or bytes that may be one.
  using Property = std::variant<std::string, std::vector<std::uint8_t>>;
  using Properties = std::map<std::string, Property, std::less<>>;

  /// Set in the flags of a reconfiguration by which a display may have come to be driven in another
  /// way.
  static constexpr std::uint32_t kSetModeFlag = 8;

  /// `userInfo` is what was registered with it.
  using ReconfigurationCallback = void (*)(std::uint32_t display, std::uint32_t flags,
                                           void* userInfo);

  Displays() = default;
  virtual ~Displays() = default;
  Displays(const Displays&) = delete;
  Displays& operator=(const Displays&) = delete;

  /// The devices of a class, "IOPCIDevice", in the order in which the machine has them. Nothing
  /// when they cannot be looked for.
  virtual std::optional<std::vector<Device>> matchingServices(std::string_view serviceClass) = 0;

  /// Of a device found before: "IOName", a text, is "display" for a display controller, whose name
  /// "model" has as bytes. Nothing when they cannot be read.
  virtual std::optional<Properties> properties(Device device) = 0;

  /// From now on the callback is called for each reconfiguration, on a thread of the machine's. The
  /// same callback with the same `userInfo` counts once.
  virtual void registerReconfigurationCallback(ReconfigurationCallback callback,
                                               void* userInfo) = 0;

  /// When it returns, no call is under way and none will come. Not to be called by a callback.
  virtual void removeReconfigurationCallback(ReconfigurationCallback callback, void* userInfo) = 0;
};

}  // namespace vel
