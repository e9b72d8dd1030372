#include "host/notifications/DesktopNotifications.h"

#include <exception>
#include <utility>

#include "host/notifications/NotificationMessage.h"
#include "host/notifications/SessionBus.h"

namespace vel {

DesktopNotifications::DesktopNotifications(Problem problem, std::chrono::milliseconds limit)
    : problem_(std::move(problem)), limit_(limit) {}

DesktopNotifications::~DesktopNotifications() {
  ending_.wake();
}

void DesktopNotifications::setDelegate(UserNotificationCenterDelegate* delegate) {
  const std::lock_guard lock(mutex_);
  delegate_ = delegate;
}

void DesktopNotifications::deliverNotification(const UserNotification& notification) {
  if (mayShow(notification)) {
    queue_.async([this, notification] { show(notification); });
  }
}

bool DesktopNotifications::mayShow(const UserNotification& notification) {
  const std::lock_guard lock(mutex_);
  return delegate_ != nullptr && delegate_->shouldPresentNotification(notification);
}

void DesktopNotifications::show(const UserNotification& notification) {
  try {
    auto bus = std::make_unique<SessionBus>(limit_, ending_.descriptor());
    showNotification(*bus, notification, notificationCapabilities(*bus));
    lastShown_ = std::move(bus);
  } catch (const SessionBus::Cancelled&) {
    // Nobody is left to be told.
  } catch (const std::exception& error) {
    if (const Problem problem = std::exchange(problem_, nullptr)) {
      problem(std::string("no notification service: ") + error.what());
    }
  }
}

}  // namespace vel
