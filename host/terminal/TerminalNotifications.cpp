#include "host/terminal/TerminalNotifications.h"

#include <utility>

#include "host/terminal/Text.h"

namespace vel {

void TerminalNotifications::setDelegate(UserNotificationCenterDelegate* delegate) {
  if (other_ != nullptr) {
    other_->setDelegate(delegate);
  }
  const std::lock_guard lock(mutex_);
  delegate_ = delegate;
}

void TerminalNotifications::deliverNotification(const UserNotification& notification) {
  if (other_ != nullptr) {
    other_->deliverNotification(notification);
  }
  const std::lock_guard lock(mutex_);
  if (delegate_ != nullptr && delegate_->shouldPresentNotification(notification)) {
    waiting_.push_back(decode(notification.title) + L": " + decode(notification.informativeText));
  }
}

std::vector<std::wstring> TerminalNotifications::take() {
  const std::lock_guard lock(mutex_);
  return std::exchange(waiting_, {});
}

}  // namespace vel
