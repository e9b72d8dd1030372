// Switching between graphics processors as far as the kernel lets us; docs/gpu.md has the mapping.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "platform/graphics/SwitchingDriver.h"
#include "platform/linux/graphics/DisplayControllers.h"
#include "platform/linux/graphics/VgaSwitcheroo.h"

namespace vel {

/// Why a mode that was asked for does not hold.
struct SwitchingProblem {
  enum class Kind : std::uint8_t {
    notPermitted,  ///< `file` may not be written
    notSupported,  ///< the kernel does not have `file`, or does not take what is written
    notDynamic     ///< by `file` the kernel does not power the discrete one up and down by itself
  };

  Kind kind;
  std::filesystem::path file;
  std::error_code error;  ///< none with `notDynamic`
};

class LinuxSwitchingDriver : public SwitchingDriver {
 public:
  using OnProblem = std::function<void(const SwitchingProblem&)>;

  /// `onProblem` hears of the first problem alone, on the thread of the call that meets it.
  LinuxSwitchingDriver(std::filesystem::path sys, const std::filesystem::path& debugfs,
                       OnProblem onProblem = {});

  std::optional<std::vector<Service>> matchingServices(std::string_view serviceClass) override;
  std::optional<Connection> open(Service service, std::uint32_t type) override;
  int callScalarMethod(Connection connection, std::uint32_t selector,
                       std::span<const std::uint64_t> input,
                       std::span<std::uint64_t> output) override;
  void close(Connection connection) override;

  /// Whether a mode has been set yet, with success or without. On any thread.
  [[nodiscard]] bool hasBeenSet() const { return modeSet_; }

 private:
  /// What the machine is like at one moment.
  struct Machine {
    std::optional<SwitchClients> clients;  ///< nothing when they cannot be read
    std::vector<DisplayController> controllers;
  };

  [[nodiscard]] bool isOpen(Connection connection) const;
  [[nodiscard]] Machine lookAtMachine() const;
  [[nodiscard]] std::optional<std::uint64_t> get(std::uint64_t feature) const;
  /// False for a feature that there is not.
  bool set(std::uint64_t feature, std::uint64_t value);

  /// A switch waits until programs let go of the displays.
  [[nodiscard]] bool switchesWait() const;
  void setPolicy(std::uint64_t policy);
  void leaveDynamic();
  void enterDynamic();
  void switchNow();
  void send(std::string_view command);
  void tell(const SwitchingProblem& problem);

  const std::filesystem::path sys_;
  const VgaSwitcheroo switch_;
  const OnProblem onProblem_;
  std::atomic<bool> problemTold_ = false;
  std::atomic<bool> modeSet_ = false;
  std::atomic<std::uint64_t> policy_ = 0;
  mutable std::mutex mutex_;
  std::set<Connection> connections_;
  Connection lastConnection_ = 0;
};

}  // namespace vel
