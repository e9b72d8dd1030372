// One Velbar per user and display: a second start talks to the first.
#pragma once

#include <QSocketNotifier>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "host/EventDescriptor.h"

namespace vel {

/// Through a socket in the user's runtime directory; the lock beside it tells whether its owner is
/// alive. What the second one says while the first one starts waits in the socket.
class SingleInstance {
 public:
  /// `name` tells sessions apart; any text. Throws std::system_error when there is no directory for
  /// the socket.
  explicit SingleInstance(const std::string& name);
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  /// Whether this process is the first.
  [[nodiscard]] bool isFirst() const { return socket_ != nullptr; }

  /// Sends the first one a word. False when it does not take it.
  [[nodiscard]] bool tell(std::string_view word) const;

  /// Of the first one: readable while words wait.
  [[nodiscard]] const EventDescriptor& socket() const { return *socket_; }

 private:
  std::filesystem::path socketPath_;
  std::unique_ptr<EventDescriptor> lock_;
  std::unique_ptr<EventDescriptor> socket_;  ///< null in a second one
};

/// Hears what later starts say. Needs Qt's event loop.
class InstanceListener {
 public:
  /// `first` outlives the listener. Calls `hear` on the main thread with each word.
  InstanceListener(const SingleInstance& first, std::function<void(std::string_view word)> hear);

 private:
  void receive();

  const EventDescriptor& socket_;
  std::function<void(std::string_view)> hear_;
  QSocketNotifier arrivals_;
};

}  // namespace vel
