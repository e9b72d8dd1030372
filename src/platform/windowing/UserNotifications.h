// Messages to the user that stand beside all windows.
#pragma once

#include <optional>
#include <string>

namespace vel {

/// Texts are plain, in UTF-8; what is none shows as replacement characters. The name of a process
/// in them is a stranger's text: whoever shows it takes markup and control characters from it.
struct UserNotification {
  std::string title;
  std::string informativeText;
  bool hasDefaultSound = false;
  std::optional<std::string> actionButtonTitle;  ///< no such button without one

  bool operator==(const UserNotification&) const = default;
};

/// Asked on whatever thread the centre uses.
class UserNotificationCenterDelegate {
 public:
  UserNotificationCenterDelegate() = default;
  virtual ~UserNotificationCenterDelegate() = default;
  UserNotificationCenterDelegate(const UserNotificationCenterDelegate&) = delete;
  UserNotificationCenterDelegate& operator=(const UserNotificationCenterDelegate&) = delete;

  /// Whether the notification is to be shown even while the user has the program before them.
  virtual bool shouldPresentNotification(const UserNotification& notification) = 0;
};

/// May be used on any thread. Whether a notification reaches the user is not reported.
class UserNotificationCenter {
 public:
  UserNotificationCenter() = default;
  virtual ~UserNotificationCenter() = default;
  UserNotificationCenter(const UserNotificationCenter&) = delete;
  UserNotificationCenter& operator=(const UserNotificationCenter&) = delete;

  /// Null for none. It stays its owner's, who takes it back before it goes.
  virtual void setDelegate(UserNotificationCenterDelegate* delegate) = 0;

  /// At once, without waiting for whoever shows it.
  virtual void deliverNotification(const UserNotification& notification) = 0;
};

}  // namespace vel
