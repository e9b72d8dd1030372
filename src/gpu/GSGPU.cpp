#include "gpu/GSGPU.h"

#include <algorithm>
#include <cstdint>
#include <initializer_list>
#include <mutex>
#include <string_view>
#include <utility>
#include <variant>

#include "gpu/GSMux.h"
#include "platform/Platform.h"
#include "platform/foundation/SerialQueue.h"

namespace vel {
namespace {

constexpr std::string_view kLegacyIntegrated = "NVIDIA GeForce 9400M";
constexpr std::string_view kLegacyDiscrete = "NVIDIA GeForce 9600M GT";
constexpr std::string_view k2010Discrete = "NVIDIA GeForce GT 330M";
constexpr std::string_view kIntegratedPrefix = "Intel";

/// The driver's answer is not the new one at once.
constexpr double kSecondsToChange = 0.5;

using Names = std::vector<std::string>;

/// Each is found out when it is first asked for.
struct Findings {
  std::optional<Names> names;
  std::optional<std::string> integratedName;
  std::optional<std::string> discreteName;
  std::optional<bool> isLegacy;
  std::optional<bool> is2010;
};

struct Registration {
  /// Where the callback is; kept, as the delegate's owner may go after the platform was
  /// uninstalled. Null while there is no registration.
  Displays* displays = nullptr;
  std::shared_ptr<GSGPUDelegate> delegate;
  std::shared_ptr<SerialQueue> queue;
};

/// Of the class, one for the process.
struct State {
  std::recursive_mutex findingsMutex;
  Findings findings;
  std::mutex registrationMutex;
  Registration registration;
};

State& state() {
  static State state;
  return state;
}

Registration registration() {
  const std::lock_guard lock(state().registrationMutex);
  return state().registration;
}

void setRegistration(Registration registration) {
  // The earlier delegate goes without the lock.
  const std::lock_guard lock(state().registrationMutex);
  std::swap(state().registration, registration);
}

// --- Names ---

bool equalInAnyCase(std::string_view text, std::string_view lowercase) {
  return std::equal(text.begin(), text.end(), lowercase.begin(), lowercase.end(),
                    [](char one, char lower) {
                      return (one >= 'A' && one <= 'Z' ? one - 'A' + 'a' : one) == lower;
                    });
}

bool isDisplay(const Displays::Properties& properties) {
  const auto name = properties.find("IOName");
  const auto* text = name == properties.end() ? nullptr : std::get_if<std::string>(&name->second);
  return text != nullptr && equalInAnyCase(*text, "display");
}

Names readNames() {
  Names names;
  Displays& displays = Platform::current().displays;
  const auto devices = displays.matchingServices("IOPCIDevice");
  for (const Displays::Device device : devices.value_or(std::vector<Displays::Device>())) {
    const auto properties = displays.properties(device);
    if (!properties || !isDisplay(*properties)) {
      continue;
    }
    const auto model = properties->find("model");
    if (model == properties->end()) {
      continue;
    }
    if (const auto* bytes = std::get_if<std::vector<std::uint8_t>>(&model->second)) {
      names.emplace_back(bytes->begin(), bytes->end());
    }
  }
  return names;
}

bool hasAll(std::initializer_list<std::string_view> wanted) {
  const Names& names = GSGPU::getGPUNames();
  return std::all_of(wanted.begin(), wanted.end(), [&names](std::string_view name) {
    return std::find(names.begin(), names.end(), name) != names.end();
  });
}

/// Kept once it has been found.
const std::optional<std::string>& find(std::optional<std::string>& kept, bool integrated) {
  if (kept) {
    return kept;
  }
  if (GSGPU::isLegacyMachine()) {
    kept = integrated ? kLegacyIntegrated : kLegacyDiscrete;
    return kept;
  }
  const Names& names = GSGPU::getGPUNames();
  const auto name = std::find_if(names.begin(), names.end(), [integrated](const auto& any) {
    return any.starts_with(kIntegratedPrefix) == integrated;
  });
  if (name != names.end()) {
    kept = *name;
  }
  return kept;
}

// --- Changes ---

/// On the change queue.
void tellDelegate() {
  Platform::current().clock.sleep(kSecondsToChange);
  const std::int32_t gpu = GSMux::isUsingIntegratedGPU() ? 0 : 1;
  // The one that there is now, not the one that there was at the event.
  if (const auto delegate = registration().delegate) {
    delegate->GPUDidChangeTo(gpu);
  }
}

void displayDidReconfigure(std::uint32_t /*display*/, std::uint32_t flags, void* /*userInfo*/) {
  if ((flags & Displays::kSetModeFlag) == 0) {
    return;
  }
  if (const auto queue = registration().queue) {
    queue->async(tellDelegate);
  }
}

}  // namespace

const std::vector<std::string>& GSGPU::getGPUNames() {
  const std::lock_guard lock(state().findingsMutex);
  auto& names = state().findings.names;
  if (!names) {
    names = readNames();
  }
  return *names;
}

std::optional<std::string> GSGPU::integratedGPUName() {
  const std::lock_guard lock(state().findingsMutex);
  return find(state().findings.integratedName, true);
}

std::optional<std::string> GSGPU::discreteGPUName() {
  const std::lock_guard lock(state().findingsMutex);
  return find(state().findings.discreteName, false);
}

bool GSGPU::isLegacyMachine() {
  const std::lock_guard lock(state().findingsMutex);
  auto& isLegacy = state().findings.isLegacy;
  if (!isLegacy) {
    isLegacy = hasAll({kLegacyIntegrated, kLegacyDiscrete});
  }
  return *isLegacy;
}

bool GSGPU::is2010MacBookPro() {
  const std::lock_guard lock(state().findingsMutex);
  auto& is2010 = state().findings.is2010;
  if (!is2010) {
    is2010 = hasAll({k2010Discrete});
  }
  return *is2010;
}

void GSGPU::registerForGPUChangeNotifications(std::shared_ptr<GSGPUDelegate> delegate) {
  Platform& platform = Platform::current();
  auto queue = std::make_shared<SerialQueue>(
      platform.globalQueue, platform.mainBundle.identifier() + ".GPUChangeNotificationQueue");
  setRegistration({&platform.displays, std::move(delegate), std::move(queue)});
  platform.displays.registerReconfigurationCallback(displayDidReconfigure, nullptr);
}

void GSGPU::unRegisterForGPUChangeNotifications() {
  if (Displays* displays = registration().displays) {
    displays->removeReconfigurationCallback(displayDidReconfigure, nullptr);
  }
  setRegistration({});
}

void GSGPU::forget() {
  setRegistration({});
  const std::lock_guard lock(state().findingsMutex);
  state().findings = {};
}

}  // namespace vel
