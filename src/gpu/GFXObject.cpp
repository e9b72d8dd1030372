#include "gpu/GFXObject.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "gpu/GSGPU.h"
#include "gpu/GSMux.h"
#include "platform/Platform.h"

namespace vel {
namespace {

bool wasStartedWith(std::string_view argument) {
  const auto& arguments = Platform::current().arguments;
  return std::find(arguments.begin(), arguments.end(), argument) != arguments.end();
}

/// Nothing where the mode is to be left alone.
std::optional<std::int32_t> switchingMode() {
  if (wasStartedWith("--discrete")) {
    return 1;
  }
  if (wasStartedWith("--integrated")) {
    return 0;
  }
  if (wasStartedWith("--dynamic") || !GSGPU::isLegacyMachine()) {
    return 2;
  }
  return std::nullopt;
}

}  // namespace

GFXObject::GFXObject() : isDualGPUCard_(GSMux::switcherOpen()) {}

void GFXObject::activateGPUMonitoring() {
  {
    const std::lock_guard lock(mutex_);
    if (isMonitoring_) {
      return;
    }
  }
  if (const auto mode = switchingMode()) {
    GSMux::setMode(*mode);
  }
  GSGPU::registerForGPUChangeNotifications(shared_from_this());
  {
    const std::lock_guard lock(mutex_);
    isMonitoring_ = true;
  }
  forceCurrentStateUpdateToDelegate();
}

void GFXObject::deActivateGPUMonitoring() {
  {
    const std::lock_guard lock(mutex_);
    if (!isMonitoring_) {
      return;
    }
    isMonitoring_ = false;
  }
  GSGPU::unRegisterForGPUChangeNotifications();
}

void GFXObject::forceCurrentStateUpdateToDelegate() {
  updateGPUState(GSMux::isUsingIntegratedGPU() ? 0 : 1);
}

void GFXObject::GPUDidChangeTo(std::int32_t gpu) {
  updateGPUState(gpu);
}

void GFXObject::updateGPUState(std::int32_t gpu) {
  const std::lock_guard lock(mutex_);
  if (isMonitoring_ && delegate_ != nullptr) {
    delegate_->GPUCardTypeIs(gpu);
  }
}

GFXObjectDelegate* GFXObject::delegate() const {
  const std::lock_guard lock(mutex_);
  return delegate_;
}

void GFXObject::setDelegate(GFXObjectDelegate* delegate) {
  const std::lock_guard lock(mutex_);
  delegate_ = delegate;
}

}  // namespace vel
