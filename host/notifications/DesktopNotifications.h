// User notifications, shown by whatever serves them on the user's session bus.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "host/WakeEvent.h"
#include "host/notifications/SessionBus.h"
#include "platform/foundation/GlobalQueue.h"
#include "platform/windowing/UserNotifications.h"

namespace vel {

/// Asks the delegate on the caller's thread and does all else on a thread of its own, which the
/// first notification starts. Each notification connects to the bus anew: a server or a bus that
/// has gone costs those that meet its absence and no later one. The connection of the last one
/// shown stays open, as some servers withdraw what a program has shown once it leaves the bus.
class DesktopNotifications : public UserNotificationCenter {
 public:
  using Problem = std::function<void(const std::string& message)>;

  /// `problem` hears the first failure to show a notification and no further one, on this object's
  /// thread. `limit` is for each of the few calls that a notification takes.
  explicit DesktopNotifications(Problem problem,
                                std::chrono::milliseconds limit = std::chrono::seconds(2));

  /// Gives up what has not been shown yet.
  ~DesktopNotifications() override;

  void setDelegate(UserNotificationCenterDelegate* delegate) override;
  void deliverNotification(const UserNotification& notification) override;

 private:
  bool mayShow(const UserNotification& notification);
  void show(const UserNotification& notification);

  Problem problem_;  ///< empty once told
  const std::chrono::milliseconds limit_;
  WakeEvent ending_;
  std::unique_ptr<SessionBus> lastShown_;  ///< nobody reads from it
  std::mutex mutex_;
  UserNotificationCenterDelegate* delegate_ = nullptr;  ///< under the lock, its calls included
  GlobalQueue queue_{1};                                ///< ends before what its tasks use
};

}  // namespace vel
