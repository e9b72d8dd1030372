// Delivery by name, in which no lock is held while a handler runs.
#include "platform/foundation/NotificationCenter.h"

#include <algorithm>
#include <cassert>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace vel {
namespace {

struct Subscription {
  const void* observer;
  NotificationCenter::Handler handler;
  bool removed = false;
};

using Subscriptions = std::vector<std::shared_ptr<Subscription>>;

/// Never changed once it is published: a post keeps the one it began with.
using Snapshot = std::shared_ptr<const Subscriptions>;

/// A handler that runs; lives on the stack of its post.
struct Call {
  const void* observer;
  std::thread::id thread;
  Call* next;
};

/// A removal that waits for handlers to return; lives on the stack of its `removeObserver`.
struct Removal {
  const void* observer;
  std::thread::id thread;
  Removal* next;

  [[nodiscard]] bool waitsFor(const Call& call) const {
    return call.observer == observer && call.thread != thread;
  }
};

template <typename Node>
void unlink(Node*& head, const Node& node) {
  Node** link = &head;
  while (*link != &node) {
    link = &(*link)->next;
  }
  *link = node.next;
}

}  // namespace

struct NotificationCenter::State {
  void add(const void* observer, std::string_view name, Handler handler);
  void remove(const void* observer);
  Snapshot subscriptionsTo(std::string_view name);
  void deliver(const Subscription& subscription, const Notification& notification);

 private:
  void unsubscribe(const void* observer, std::vector<Snapshot>& retired);
  void waitUntilLeft(const void* observer, std::unique_lock<std::mutex>& lock);
  [[nodiscard]] bool mustWait(const Removal& removal) const;
  [[nodiscard]] bool closesCircle(const Removal& removal, std::thread::id thread) const;

  std::mutex mutex_;
  std::condition_variable handlerReturned_;
  std::map<std::string, Snapshot, std::less<>> subscriptions_;
  Call* calls_ = nullptr;
  Removal* removals_ = nullptr;
};

void NotificationCenter::State::add(const void* observer, std::string_view name, Handler handler) {
  auto subscription = std::make_shared<Subscription>(Subscription{observer, std::move(handler)});
  const std::lock_guard lock(mutex_);
  const auto place = subscriptions_.find(name);
  auto changed = place == subscriptions_.end() ? std::make_shared<Subscriptions>()
                                               : std::make_shared<Subscriptions>(*place->second);
  changed->push_back(std::move(subscription));
  if (place == subscriptions_.end()) {
    subscriptions_.emplace(name, std::move(changed));
  } else {
    place->second = std::move(changed);
  }
}

void NotificationCenter::State::remove(const void* observer) {
  // Outlives the lock: what a handler holds may call back from its destructor.
  std::vector<Snapshot> retired;
  std::unique_lock lock(mutex_);
  unsubscribe(observer, retired);
  waitUntilLeft(observer, lock);
}

void NotificationCenter::State::unsubscribe(const void* observer, std::vector<Snapshot>& retired) {
  const auto isTheirs = [observer](const auto& each) { return each->observer == observer; };
  for (auto place = subscriptions_.begin(); place != subscriptions_.end();) {
    auto rest = std::make_shared<Subscriptions>();
    for (const auto& each : *place->second) {
      if (isTheirs(each)) {
        each->removed = true;
      } else {
        rest->push_back(each);
      }
    }
    if (rest->size() != place->second->size()) {
      retired.push_back(std::exchange(place->second, std::move(rest)));
    }
    place = place->second->empty() ? subscriptions_.erase(place) : std::next(place);
  }
}

void NotificationCenter::State::waitUntilLeft(const void* observer,
                                              std::unique_lock<std::mutex>& lock) {
  Removal removal{observer, std::this_thread::get_id(), removals_};
  if (closesCircle(removal, removal.thread)) {
    return;
  }
  removals_ = &removal;
  handlerReturned_.wait(lock, [&] { return !mustWait(removal); });
  unlink(removals_, removal);
}

bool NotificationCenter::State::mustWait(const Removal& removal) const {
  const Call* call = calls_;
  while (call != nullptr && !removal.waitsFor(*call)) {
    call = call->next;
  }
  return call != nullptr;
}

/// Whether a thread that `removal` would wait for waits in turn, perhaps through others, for
/// `thread`. This ends, for there is no circle among the removals that already wait: a thread
/// enters no handler while it waits.
bool NotificationCenter::State::closesCircle(const Removal& removal, std::thread::id thread) const {
  for (const Call* call = calls_; call != nullptr; call = call->next) {
    if (!removal.waitsFor(*call)) {
      continue;
    }
    if (call->thread == thread) {
      return true;
    }
    for (const Removal* other = removals_; other != nullptr; other = other->next) {
      if (other->thread == call->thread && closesCircle(*other, thread)) {
        return true;
      }
    }
  }
  return false;
}

Snapshot NotificationCenter::State::subscriptionsTo(std::string_view name) {
  const std::lock_guard lock(mutex_);
  const auto place = subscriptions_.find(name);
  return place == subscriptions_.end() ? nullptr : place->second;
}

void NotificationCenter::State::deliver(const Subscription& subscription,
                                        const Notification& notification) {
  Call call{subscription.observer, std::this_thread::get_id(), nullptr};
  {
    const std::lock_guard lock(mutex_);
    if (subscription.removed) {
      return;
    }
    call.next = calls_;
    calls_ = &call;
  }
  subscription.handler(notification);
  const std::lock_guard lock(mutex_);
  unlink(calls_, call);
  if (removals_ != nullptr) {
    handlerReturned_.notify_all();
  }
}

NotificationCenter::NotificationCenter() : state_(std::make_unique<State>()) {}

NotificationCenter::~NotificationCenter() = default;

void NotificationCenter::addObserver(const void* observer, std::string_view name, Handler handler) {
  assert(handler);
  state_->add(observer, name, std::move(handler));
}

void NotificationCenter::removeObserver(const void* observer) {
  state_->remove(observer);
}

void NotificationCenter::post(std::string_view name, std::optional<std::int64_t> object) {
  const Snapshot subscriptions = state_->subscriptionsTo(name);
  if (subscriptions == nullptr) {
    return;
  }
  for (const auto& subscription : *subscriptions) {
    state_->deliver(*subscription, Notification{name, object});
  }
}

}  // namespace vel
