// Notifications as a server on the bus receives them, and what becomes of them without one.
#include "host/notifications/DesktopNotifications.h"

#include <optional>
#include <semaphore>
#include <tuple>
#include <utility>

#include "PrivateBus.h"
#include "support/TemporaryDirectory.h"

namespace vel {
namespace {

using test::NotificationServer;
using test::PrivateBus;
using namespace std::chrono_literals;

struct Answer : UserNotificationCenterDelegate {
  bool shouldPresentNotification(const UserNotification& /*notification*/) override { return yes; }
  bool yes = true;
};

class DesktopNotificationsTest : public testing::Test {
 protected:
  void start(std::chrono::milliseconds limit = 30s) {
    notifications.emplace(
        [this](const std::string& message) {
          problems.push_back(message);
          told.release();
        },
        limit);
    notifications->setDelegate(&delegate);
  }
  void show(const UserNotification& notification) {
    const std::size_t before = server->shown.size();
    notifications->deliverNotification(notification);
    server->serveUntil([&] { return server->shown.size() > before; });
  }

  test::TemporaryDirectory directory;
  std::optional<PrivateBus> bus{directory.path};
  std::optional<NotificationServer> server{std::in_place};
  Answer delegate;
  std::vector<std::string> problems;  ///< read only without notifications
  std::counting_semaphore<> told{0};  ///< once for each problem
  std::optional<DesktopNotifications> notifications;
};

const UserNotification kPlain{"Busy", "a b", false, {}};

TEST_F(DesktopNotificationsTest, GivesTheServerWhatItCanShow) {
  const UserNotification everything{"<i>Busy</i>", "<b>x</b> & %s", true, "Close & go"};
  const std::string hints = "[urgency;[1;]][desktop-entry;[org.velbar.Velbar;]]";
  // What the server says it can show, and what it gets.
  const std::vector<std::tuple<std::array<const char*, 3>, UserNotification, std::string>> cases{
      {{"body", "body", "body"}, everything, "<i>Busy</i>;<b>x</b> & %s;[][" + hints + "]"},
      {{"body", "body-markup", "body"},
       everything,
       "<i>Busy</i>;&lt;b&gt;x&lt;/b&gt; &amp; %s;[][" + hints + "]"},
      {{"body", "actions", "sound"},
       everything,
       "<i>Busy</i>;<b>x</b> & %s;[close;Close & go;][" + hints +
           "[sound-name;[dialog-warning;]]]"},
      {{"body", "actions", "sound"}, kPlain, "Busy;a b;[][" + hints + "]"},
      {{"body", "actions", "body"},
       {"Č 日 🙂 \x1b[1m\n\u009b",
        "\xff \xc0\xaf \xed\xa0\x80 \ufffe \ufdd0 \u202e\u202c \xe2\x82", false, "\n"},
       "Č 日 🙂 \ufffd[1m\ufffd\ufffd;\ufffd \ufffd\ufffd \ufffd\ufffd\ufffd \ufffd \ufffd "
       "\ufffd\ufffd "
       "\ufffd\ufffd;[close;\ufffd;][" +
           hints + "]"},
  };
  start();
  notifications->setDelegate(nullptr);
  notifications->deliverNotification({"nobody is asked", "", false, {}});
  notifications->setDelegate(&delegate);
  delegate.yes = false;
  notifications->deliverNotification({"the delegate refuses", "", false, {}});
  delegate.yes = true;
  for (const auto& [capabilities, notification, shown] : cases) {
    SCOPED_TRACE(shown);
    server->capabilities = capabilities;
    show(notification);
    EXPECT_EQ(server->shown.back(), "Velbar;0;org.velbar.Velbar;" + shown + "-1;");
  }
  EXPECT_EQ(server->shown.size(), cases.size());
  notifications.reset();
  EXPECT_TRUE(problems.empty());
}

TEST_F(DesktopNotificationsTest, TellsOfTheFirstFailureOnlyAndMeetsTheNextServerAfresh) {
  start();
  show(kPlain);
  server->refused = "Notify";
  notifications->deliverNotification(kPlain);
  server->serveUntil([this] { return told.try_acquire(); });
  EXPECT_TRUE(server->isSenderThere()) << "until the next notification is shown";
  server->refused.clear();
  show(kPlain);

  SCOPED_TRACE("a server that dies in mid-call");
  server->silentOn = "GetCapabilities";
  server->asked.clear();
  notifications->deliverNotification(kPlain);
  server->serveUntil([this] { return !server->asked.empty(); });
  server.emplace();
  show(kPlain);

  SCOPED_TRACE("a restarted bus");
  server.reset();
  bus.reset();
  notifications->deliverNotification(kPlain);
  bus.emplace(directory.path);
  server.emplace();
  show(kPlain);
  notifications.reset();
  server->serveUntil([this] { return !server->isSenderThere(); });
  EXPECT_EQ(problems, std::vector<std::string>{"no notification service: not now"});
}

TEST_F(DesktopNotificationsTest, GivesUpWhereNothingAnswers) {
  const auto problemsWithin = [this](std::chrono::milliseconds limit) {
    start(limit);
    notifications->deliverNotification(kPlain);
    EXPECT_TRUE(told.try_acquire_for(30s));
    notifications.reset();
    return std::exchange(problems, {});
  };
  const std::vector<std::string> noAnswer{"no notification service: no answer within 50 ms"};
  EXPECT_EQ(problemsWithin(50ms), noAnswer) << "a server that hangs";
  bus->freeze();
  EXPECT_EQ(problemsWithin(50ms), noAnswer) << "a bus that hangs";
  bus.reset();
  EXPECT_EQ(problemsWithin(60s).size(), 1U) << "a bus that has gone";
  unsetenv("DBUS_SESSION_BUS_ADDRESS");
  unsetenv("XDG_RUNTIME_DIR");
  EXPECT_EQ(problemsWithin(60s).size(), 1U) << "no bus at all";
}

TEST_F(DesktopNotificationsTest, EndsInMidCall) {
  start();
  server->silentOn = "Notify";
  notifications->deliverNotification(kPlain);
  notifications->deliverNotification(kPlain);
  server->serveUntil([this] { return server->asked.size() == 2; });
  const auto before = std::chrono::steady_clock::now();
  notifications.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - before, 10s);
  EXPECT_TRUE(problems.empty());
}

}  // namespace
}  // namespace vel
