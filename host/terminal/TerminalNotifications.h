// User notifications that wait for the terminal host to show them.
#pragma once

#include <mutex>
#include <string>
#include <vector>

#include "platform/windowing/UserNotifications.h"

namespace vel {

class TerminalNotifications : public UserNotificationCenter {
 public:
  /// `other` is a centre that shows everything as well, null for none. It outlives this one.
  explicit TerminalNotifications(UserNotificationCenter* other) : other_(other) {}

  void setDelegate(UserNotificationCenterDelegate* delegate) override;
  void deliverNotification(const UserNotification& notification) override;

  /// What has come since the last call, as lines of plain text: "title: text", the oldest first.
  [[nodiscard]] std::vector<std::wstring> take();

 private:
  UserNotificationCenter* const other_;
  std::mutex mutex_;
  UserNotificationCenterDelegate* delegate_ = nullptr;  ///< under the lock, its calls included
  std::vector<std::wstring> waiting_;
};

}  // namespace vel
