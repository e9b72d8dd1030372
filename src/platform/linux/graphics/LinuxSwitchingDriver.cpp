#include "platform/linux/graphics/LinuxSwitchingDriver.h"

#include <algorithm>
#include <utility>

#include "platform/graphics/SwitchingFeatures.h"

namespace vel {
namespace {

using namespace switching;

constexpr int kFailed = -1;

using Controllers = std::vector<DisplayController>;

bool anyDriving(const Controllers& controllers, bool integrated) {
  return std::any_of(controllers.begin(), controllers.end(), [integrated](const auto& each) {
    return each.integrated == integrated && each.drivesDisplay();
  });
}

std::optional<SwitchClient> activeClient(const std::optional<SwitchClients>& clients) {
  for (const SwitchClient& client : clients.value_or(SwitchClients())) {
    if (client.active) {
      return client;
    }
  }
  return std::nullopt;
}

std::optional<SwitchClient> clientAt(const std::optional<SwitchClients>& clients,
                                     const PciAddress& address) {
  for (const SwitchClient& client : clients.value_or(SwitchClients())) {
    if (client.address == address) {
      return client;
    }
  }
  return std::nullopt;
}

/// Whether the integrated one drives the displays; nothing when it cannot be told.
std::optional<bool> integratedDrives(const std::optional<SwitchClients>& clients,
                                     const Controllers& controllers) {
  if (anyDriving(controllers, false)) {
    return false;
  }
  if (anyDriving(controllers, true)) {
    return true;
  }
  if (const auto client = activeClient(clients)) {
    return !client->discrete;
  }
  const auto boot = std::find_if(controllers.begin(), controllers.end(),
                                 [](const auto& each) { return each.isBootDisplay(); });
  return boot != controllers.end() ? std::optional(boot->integrated) : std::nullopt;
}

/// Whether the kernel powers a discrete one up and down by itself; nothing when it cannot be told.
/// Its driver must do so and the setting must let it.
std::optional<bool> isDynamic(const std::optional<SwitchClients>& clients,
                              const Controllers& controllers) {
  std::optional<bool> dynamic;
  for (const DisplayController& controller : controllers) {
    const auto control = readAttribute(controller.powerControl());
    const auto client = clientAt(clients, controller.device.address);
    if (!controller.integrated && (control || client)) {
      const bool isDriven = !client || client->dynamic;
      const bool isAllowed = !control || *control == "auto";
      dynamic = dynamic.value_or(false) || (isDriven && isAllowed);
    }
  }
  return dynamic;
}

std::string_view commandFor(bool discrete) {
  return discrete ? "DIS" : "IGD";
}

}  // namespace

LinuxSwitchingDriver::LinuxSwitchingDriver(std::filesystem::path sys,
                                           const std::filesystem::path& debugfs,
                                           OnProblem onProblem)
    : sys_(std::move(sys)), switch_(debugfs), onProblem_(std::move(onProblem)) {}

// --- Connections ---

std::optional<std::vector<SwitchingDriver::Service>> LinuxSwitchingDriver::matchingServices(
    std::string_view serviceClass) {
  if (serviceClass != kServiceClass) {
    return std::vector<Service>();
  }
  const Controllers controllers = lookAtMachine().controllers;
  const auto integrated = std::count_if(controllers.begin(), controllers.end(),
                                        [](const auto& each) { return each.integrated; });
  const bool both = integrated != 0 && std::cmp_not_equal(integrated, controllers.size());
  return std::vector<Service>(both ? 1 : 0, Service{1});
}

std::optional<SwitchingDriver::Connection> LinuxSwitchingDriver::open(Service /*service*/,
                                                                      std::uint32_t /*type*/) {
  const std::lock_guard lock(mutex_);
  connections_.insert(++lastConnection_);
  return lastConnection_;
}

void LinuxSwitchingDriver::close(Connection connection) {
  const std::lock_guard lock(mutex_);
  connections_.erase(connection);
}

bool LinuxSwitchingDriver::isOpen(Connection connection) const {
  const std::lock_guard lock(mutex_);
  return connections_.contains(connection);
}

int LinuxSwitchingDriver::callScalarMethod(Connection connection, std::uint32_t selector,
                                           std::span<const std::uint64_t> input,
                                           std::span<std::uint64_t> output) {
  if (!isOpen(connection)) {
    return kFailed;
  }
  if (selector == selector::start || selector == selector::stop) {
    return 0;
  }
  const bool isFeatureCall = !input.empty() && input[0] == kFeatureCall;
  if (selector == selector::setFeature && isFeatureCall && input.size() == 3 && output.empty()) {
    return set(input[1], input[2]) ? 0 : kFailed;
  }
  if (selector == selector::getFeature && isFeatureCall && input.size() == 2 &&
      output.size() == 1) {
    if (const auto value = get(input[1])) {
      output[0] = *value;
      return 0;
    }
  }
  return kFailed;
}

// --- Features ---

LinuxSwitchingDriver::Machine LinuxSwitchingDriver::lookAtMachine() const {
  Machine machine{.clients = switch_.clients(), .controllers = {}};
  machine.controllers = findDisplayControllers(sys_, machine.clients.value_or(SwitchClients()));
  return machine;
}

std::optional<std::uint64_t> LinuxSwitchingDriver::get(std::uint64_t feature) const {
  switch (feature) {
    case feature::dynamicSwitching: {
      const Machine machine = lookAtMachine();
      return isDynamic(machine.clients, machine.controllers);
    }
    case feature::integratedInUse: {
      const Machine machine = lookAtMachine();
      return integratedDrives(machine.clients, machine.controllers);
    }
    case feature::switchPolicy:
      // Without the switch a policy is only a wish.
      return switch_.send("") ? kNewStylePolicy : policy_.load();
    default:
      return std::nullopt;
  }
}

bool LinuxSwitchingDriver::set(std::uint64_t feature, std::uint64_t value) {
  switch (feature) {
    case feature::leaveDynamic:
    case feature::enterDynamic:
      return true;  // They stand for nothing in the kernel.
    case feature::switchNow:
      if (value == 0) {
        switchNow();
      }
      return true;
    case feature::dynamicSwitching:
      // Every mode writes it.
      modeSet_ = true;
      if (value == 0) {
        leaveDynamic();
      } else if (value == 1) {
        enterDynamic();
      }
      return true;
    case feature::switchPolicy:
      if (value == kNewStylePolicy || value == kOldStylePolicy) {
        setPolicy(value);
      }
      return true;
    default:
      return false;
  }
}

bool LinuxSwitchingDriver::switchesWait() const {
  return policy_ == kOldStylePolicy;
}

void LinuxSwitchingDriver::setPolicy(std::uint64_t policy) {
  if (policy_.exchange(policy) != kOldStylePolicy || policy == kOldStylePolicy) {
    return;
  }
  // The kernel drops a switch that waits when it is told to switch to the one that is active.
  if (const auto client = activeClient(switch_.clients())) {
    send(commandFor(client->discrete));
  }
}

void LinuxSwitchingDriver::leaveDynamic() {
  // Powers down the one that is not active, unless its driver does so by itself. What the kernel
  // has for active need not be what shows the picture: a boot loader may have switched. Otherwise
  // there is nothing to do, but whether a switch will be taken is to be known.
  const Machine machine = lookAtMachine();
  const auto active = activeClient(machine.clients);
  const bool isDiscreteIdle =
      active && !active->discrete &&
      integratedDrives(machine.clients, machine.controllers).value_or(false);
  send(isDiscreteIdle ? "OFF" : "");
}

/// The kernel has no command for it: drivers decide it when they are loaded. "ON" would wake a card
/// that the user has powered down.
void LinuxSwitchingDriver::enterDynamic() {
  const Machine machine = lookAtMachine();
  const auto discrete = std::find_if(machine.controllers.begin(), machine.controllers.end(),
                                     [](const auto& each) { return !each.integrated; });
  if (discrete == machine.controllers.end() ||
      isDynamic(machine.clients, machine.controllers) != false) {
    return;
  }
  // It may be the driver that does not follow the setting.
  const bool isAllowed = readAttribute(discrete->powerControl()) == "auto";
  tell({.kind = SwitchingProblem::Kind::notDynamic,
        .file = isAllowed ? switch_.file() : discrete->powerControl(),
        .error = {}});
}

void LinuxSwitchingDriver::switchNow() {
  const Machine machine = lookAtMachine();
  const auto integrated = integratedDrives(machine.clients, machine.controllers);
  if (integrated) {
    send((switchesWait() ? "D" : "") + std::string(commandFor(*integrated)));
  }
}

void LinuxSwitchingDriver::send(std::string_view command) {
  const std::error_code error = switch_.send(command);
  if (!error) {
    return;
  }
  const bool isRefused = error == std::errc::permission_denied ||
                         error == std::errc::operation_not_permitted ||
                         error == std::errc::read_only_file_system;
  tell({.kind =
            isRefused ? SwitchingProblem::Kind::notPermitted : SwitchingProblem::Kind::notSupported,
        .file = switch_.file(),
        .error = error});
}

void LinuxSwitchingDriver::tell(const SwitchingProblem& problem) {
  if (!problemTold_.exchange(true) && onProblem_) {
    onProblem_(problem);
  }
}

}  // namespace vel
