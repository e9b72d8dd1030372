// The notification centre of a front that has nowhere to show messages.
#pragma once

#include "platform/windowing/UserNotifications.h"

namespace vel {

class NoUserNotificationCenter : public UserNotificationCenter {
 public:
  void setDelegate(UserNotificationCenterDelegate* /*delegate*/) override {}
  void deliverNotification(const UserNotification& /*notification*/) override {}
};

}  // namespace vel
