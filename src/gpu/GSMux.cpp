#include "gpu/GSMux.h"

#include <array>
#include <atomic>
#include <span>

#include "gpu/GSGPU.h"
#include "platform/Platform.h"
#include "platform/graphics/SwitchingFeatures.h"

namespace vel {
namespace {

using namespace switching;

/// The driver takes its time to leave dynamic switching.
constexpr double kSecondsToLeaveDynamic = 1.0;

/// 0 while there is none.
std::atomic<SwitchingDriver::Connection> connection = 0;

SwitchingDriver& driver() {
  return Platform::current().switchingDriver;
}

bool call(std::uint32_t selector, std::span<const std::uint64_t> input = {},
          std::span<std::uint64_t> output = {}) {
  return driver().callScalarMethod(connection, selector, input, output) == 0;
}

void set(std::uint64_t feature, std::uint64_t value) {
  call(selector::setFeature, std::array{kFeatureCall, feature, value});
}

/// 0 when it cannot be read.
std::uint64_t get(std::uint64_t feature) {
  std::array<std::uint64_t, 1> value{};
  call(selector::getFeature, std::array{kFeatureCall, feature}, value);
  return value.front();
}

void enterDynamicSwitching() {
  set(feature::enterDynamic, 1);
  set(feature::switchPolicy, kNewStylePolicy);
  set(feature::dynamicSwitching, 1);
}

void stayOn(bool integrated) {
  set(feature::dynamicSwitching, 0);
  if (!GSGPU::is2010MacBookPro()) {
    set(feature::leaveDynamic, 1);
    set(feature::switchPolicy, kOldStylePolicy);
  }
  Platform::current().clock.sleep(kSecondsToLeaveDynamic);
  if (GSMux::isUsingIntegratedGPU() != integrated) {
    set(feature::switchNow, 0);
  }
}

}  // namespace

bool GSMux::switcherOpen() {
  const auto services = driver().matchingServices(kServiceClass);
  if (!services || services->empty()) {
    return false;
  }
  const auto opened = driver().open(services->front(), 0);
  if (!opened) {
    return false;
  }
  connection = *opened;
  return call(selector::start);
}

void GSMux::switcherClose() {
  if (connection == 0) {
    return;
  }
  call(selector::stop);
  driver().close(connection);
  connection = 0;
}

bool GSMux::setMode(std::int32_t mode) {
  if (connection == 0) {
    return false;
  }
  switch (mode) {
    case 0:
    case 1:
      stayOn(mode == 0);
      break;
    case 2:
      enterDynamicSwitching();
      break;
    default:
      break;
  }
  return true;
}

bool GSMux::isUsingIntegratedGPU() {
  return connection != 0 && get(feature::integratedInUse) != 0;
}

bool GSMux::isUsingDiscreteGPU() {
  return !isUsingIntegratedGPU();
}

bool GSMux::isUsingDynamicSwitching() {
  return connection != 0 && get(feature::dynamicSwitching) != 0;
}

bool GSMux::isUsingOldStyleSwitchPolicy() {
  return get(feature::switchPolicy) == kOldStylePolicy;
}

bool GSMux::isOnIntegratedOnlyMode() {
  return isUsingIntegratedGPU() && (isUsingOldStyleSwitchPolicy() || GSGPU::is2010MacBookPro());
}

bool GSMux::isOnDiscreteOnlyMode() {
  return isUsingDiscreteGPU() && (isUsingOldStyleSwitchPolicy() || GSGPU::is2010MacBookPro());
}

}  // namespace vel
