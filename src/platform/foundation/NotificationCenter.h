// Broadcast by name: whoever posts does not know who listens.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string_view>

#include "platform/foundation/Notification.h"

namespace vel {

/// Delivers synchronously, on the posting thread, to every observer of the name, whoever posts, in
/// the order of subscription. Every operation may be called from any thread and from inside a
/// handler.
///
/// - An observer added while a post is under way does not receive that post.
/// - An observer removed while a post is under way is not called any more, by that post either.
///   When `removeObserver` returns, no other thread is inside one of the observer's handlers, so
///   that an observer may be destroyed right after it. (Called from one of the observer's own
///   handlers, it does not wait for that handler. When threads inside handlers remove each other's
///   observers, they cannot all wait: the call that would close the circle returns at once.)
/// - The function given as handler stays alive while it runs, so that a handler may remove and
///   destroy its own observer. It must not throw.
/// - A post allocates nothing.
class NotificationCenter {
 public:
  using Handler = std::function<void(const Notification&)>;

  NotificationCenter();
  ~NotificationCenter();
  NotificationCenter(const NotificationCenter&) = delete;
  NotificationCenter& operator=(const NotificationCenter&) = delete;

  /// `observer` is the identity under which the subscription is removed; it is never dereferenced.
  /// An observer may subscribe to several names, and several times to one.
  void addObserver(const void* observer, std::string_view name, Handler handler);

  /// Removes all of the observer's subscriptions at once; an unknown observer is no error.
  void removeObserver(const void* observer);

  void post(std::string_view name, std::optional<std::int64_t> object = std::nullopt);

 private:
  struct State;
  std::unique_ptr<State> state_;
};

}  // namespace vel
