// The notification service's two calls, as messages.
#pragma once

#include <string>
#include <vector>

#include "host/notifications/SessionBus.h"
#include "platform/windowing/UserNotifications.h"

namespace vel {

/// What the server at the other end of `bus` can do, by the names of the service.
[[nodiscard]] std::vector<std::string> notificationCapabilities(SessionBus& bus);

/// Has the server show the notification, without what it cannot do.
void showNotification(SessionBus& bus, const UserNotification& notification,
                      const std::vector<std::string>& capabilities);

}  // namespace vel
