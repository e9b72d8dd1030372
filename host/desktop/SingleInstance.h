// One Velbar per user and display: a second start talks to the first.
#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <QSocketNotifier>

#include "host/EventDescriptor.h"

namespace vel {

/// Through a socket in the user's runtime directory; the lock beside it tells whether its owner is
/// alive.
class SingleInstance {
 public:
  /// `name` tells sessions apart; any text. Throws std::system_error when there is no directory for
  /// the socket.
  explicit SingleInstance(const std::string& name);
  ~SingleInstance();
  SingleInstance(const SingleInstance&) = delete;
  SingleInstance& operator=(const SingleInstance&) = delete;

  /// Whether this process is the first.
  [[nodiscard]] bool isFirst() const { return first_; }

  /// Sends the first one a word. False when it does not take it.
  [[nodiscard]] bool tell(std::string_view word) const;

  /// Calls `hear` on the main thread with each word that arrives. Needs Qt's event loop.
  void listen(std::function<void(std::string_view word)> hear);

 private:
  void receive();

  std::filesystem::path socketPath_;
  std::unique_ptr<EventDescriptor> lock_;
  bool first_ = false;
  std::unique_ptr<EventDescriptor> socket_;
  std::unique_ptr<QSocketNotifier> arrivals_;
  std::function<void(std::string_view)> hear_;
};

}  // namespace vel
