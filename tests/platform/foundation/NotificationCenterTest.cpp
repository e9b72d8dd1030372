// Delivery, also while handlers and other threads change who is subscribed.
#include "platform/foundation/NotificationCenter.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <barrier>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace vel::test {

/// Observers "a" to "d". Each writes down its name and the integer that it is called with.
struct Log {
  using Action = void (*)(Log&);

  void remove(char observer) { center.removeObserver(&identities.at(observer)); }
  void subscribe(
      char observer, std::string_view name, Action actOn1 = [](Log&) {}) {
    const auto handle = [=, this](const Notification& notification) {
      if (notification.object == 1) {
        actOn1(*this);
      }
      // What the handler holds is still there, even if it has removed itself.
      called += observer + std::to_string(notification.integerValue()) + ' ';
    };
    center.addObserver(&identities.at(observer), name, handle);
  }

  NotificationCenter center;
  std::string called;
  std::map<char, int> identities{{'a', 0}, {'b', 0}, {'c', 0}, {'d', 0}};
};

TEST(NotificationCenter, DeliversInOrderWhileHandlersChangeWhoIsSubscribed) {
  // What `a` does at the first post, and who is called by that and by the next one.
  const std::vector<std::pair<Log::Action, const char*>> cases = {
      {[](Log& log) { log.subscribe('d', "n"); }, "a1 b1 c1 b1 a0 b0 c0 b0 d0 "},
      {[](Log& log) { log.remove('b'); }, "a1 c1 a0 c0 "},
      {[](Log& log) { log.remove('a'); }, "a1 b1 c1 b1 b0 c0 b0 "},
      {[](Log& log) { log.center.post("remove c", 1); }, "d1 a1 b1 b1 a0 b0 b0 "},
  };
  for (const auto& [actionOfA, called] : cases) {
    Log log;
    log.subscribe('a', "n", actionOfA);
    log.subscribe('b', "n");
    log.subscribe('c', "n");
    log.subscribe('b', "n");
    log.subscribe('d', "remove c", [](Log& all) { all.remove('c'); });
    log.center.post("n", 1);
    log.center.post("n");
    EXPECT_EQ(log.called, called);
  }
}

TEST(NotificationCenter, RemovedObserverIsLeftAloneByEveryThread) {
  NotificationCenter center;
  std::array<std::atomic<bool>, 500> observers{};  // Each says whether it has been removed.
  const auto postOn = [&center](const std::stop_token& stop) {
    while (!stop.stop_requested()) {
      center.post("n");
    }
  };
  const std::array posters = {std::jthread(postOn), std::jthread(postOn)};
  for (auto& removed : observers) {
    center.addObserver(&removed, "n", [&removed](const Notification&) {
      std::this_thread::yield();
      EXPECT_FALSE(removed);
    });
    center.post("n");
    center.removeObserver(&removed);
    removed = true;
  }
}

/// Both threads are inside a handler and would have to wait for the other: one gives way.
TEST(NotificationCenter, ThreadsInHandlersMayRemoveEachOthersObservers) {
  NotificationCenter center;
  const std::array<const char*, 2> names = {"0", "1"};
  std::barrier bothInside(2);
  for (const std::size_t i : {0U, 1U}) {
    center.addObserver(&names[i], names[i], [&, i](const Notification&) {
      bothInside.arrive_and_wait();
      center.removeObserver(&names[1 - i]);
    });
  }
  std::thread other([&] { center.post("1"); });
  center.post("0");
  other.join();
  center.post("0");  // Would wait at the barrier if the handler were still subscribed.
}

}  // namespace vel::test
