// User notifications without anybody to show them.
#pragma once

#include <mutex>
#include <vector>

#include "platform/windowing/UserNotifications.h"

namespace vel {

/// Keeps what the delegate lets through.
class HeadlessUserNotificationCenter : public UserNotificationCenter {
 public:
  void setDelegate(UserNotificationCenterDelegate* delegate) override {
    const std::lock_guard lock(mutex_);
    delegate_ = delegate;
  }
  void deliverNotification(const UserNotification& notification) override {
    const std::lock_guard lock(mutex_);
    if (delegate_ != nullptr && delegate_->shouldPresentNotification(notification)) {
      delivered_.push_back(notification);
    }
  }

  [[nodiscard]] std::vector<UserNotification> delivered() const {
    const std::lock_guard lock(mutex_);
    return delivered_;
  }
  [[nodiscard]] bool hasDelegate() const {
    const std::lock_guard lock(mutex_);
    return delegate_ != nullptr;
  }

 private:
  mutable std::mutex mutex_;
  UserNotificationCenterDelegate* delegate_ = nullptr;
  std::vector<UserNotification> delivered_;
};

}  // namespace vel
