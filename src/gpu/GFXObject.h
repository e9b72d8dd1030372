// Watches which graphics processor is in use, and sets the switching mode that the program was
// started with.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>

#include "gpu/GSGPUDelegate.h"

namespace vel {

/// Hears which graphics processor is in use.
class GFXObjectDelegate {
 public:
  GFXObjectDelegate() = default;
  virtual ~GFXObjectDelegate() = default;
  GFXObjectDelegate(const GFXObjectDelegate&) = delete;
  GFXObjectDelegate& operator=(const GFXObjectDelegate&) = delete;

  /// 0 the integrated one, 1 the discrete one. On the thread that starts the watching, and then on
  /// any thread.
  virtual void GPUCardTypeIs(std::int64_t type) = 0;
};

class GFXObject : public GSGPUDelegate, public std::enable_shared_from_this<GFXObject> {
 public:
  /// Opens the way to the driver, for good.
  GFXObject();

  /// Whether the machine has two that can be switched.
  [[nodiscard]] bool isDualGPUCard() const { return isDualGPUCard_; }

  /// Sets the mode that the process's arguments ask for, dynamic switching without one, and tells
  /// the delegate what is in use before it returns: after a second if the mode is to stay on one.
  /// Once on, it does nothing. Shared pointers must own the object.
  void activateGPUMonitoring();
  /// No report reaches the delegate once it has returned. The mode stays.
  void deActivateGPUMonitoring();

  void forceCurrentStateUpdateToDelegate();
  void GPUDidChangeTo(std::int32_t gpu) override;
  /// Tells the delegate, while watching is on.
  void updateGPUState(std::int32_t gpu);

  [[nodiscard]] GFXObjectDelegate* delegate() const;
  /// Null for none. It stays its owner's, who takes it back before it goes: no report reaches it
  /// once this has returned.
  void setDelegate(GFXObjectDelegate* delegate);

 private:
  const bool isDualGPUCard_;
  /// Held during a report, so that whoever stops or takes the delegate back waits for it. Recursive
  /// because the delegate may do so itself.
  mutable std::recursive_mutex mutex_;
  bool isMonitoring_ = false;
  GFXObjectDelegate* delegate_ = nullptr;
};

}  // namespace vel
