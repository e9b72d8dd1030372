// JSON that is well formed whatever a process is called, what is typed, and readers that stall.
#include "host/terminal/Output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <limits>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "host/WakeEvent.h"
#include "host/terminal/JsonLines.h"
#include "host/terminal/Keyboard.h"
#include "host/terminal/TerminalNotifications.h"
#include "platform/headless/HeadlessUserNotifications.h"

namespace vel::test {
namespace {

TEST(JsonLines, AreAsciiAndExactWhateverTheRecordHolds) {
  CPUData record;
  record.set(Reading::userCPU, 0.1F);
  record.set(Reading::systemCPU, std::numeric_limits<float>::quiet_NaN());
  record.set(ProcessorReading::userCPUAll, 12, 1e-30F);
  record.setUpTime({13, -2, 0, 59});
  record.setTopMemProcess({{"\"\\\n\x1b]0;\x7f\xc2\x9b", "1", "-"}, {"\xff\xc3(日", "2", "1.5"}});
  record.setProcessesForNotification({"7", "8"});
  std::string text = "old";
  writeJson(record, text);
  EXPECT_EQ(text, R"({"userCPU":0.1,"systemCPU":null,"userCPUAll12":1e-30,)"
                  R"("upTime":{"month":13,"day":-2,"hour":0,"minute":59},"topMemProcess":[)"
                  R"({"name":"\"\\\n\u001b]0;\u007f\u009b","pid":"1","avg cpu time":"-"},)"
                  R"({"name":"\ufffd\ufffd(\u65e5","pid":"2","avg cpu time":"1.5"}],)"
                  R"("processesForNotification":["7","8"]})");
}

TEST(Keyboard, LettersInAFunctionKeyAreNotTyped) {
  using enum Key;
  const std::map<std::string, std::vector<Key>> cases = {
      {"qQtTcCgG?hH", {quit, quit, ranking, ranking, cores, cores, graph, graph, help, help, help}},
      {"y\x1b[1;5CQ", {other, other, quit}},
      {"aA<>[]\x1b[]xX",
       {alert, alert, lowerThreshold, higherThreshold, shorterDuration, longerDuration, other,
        dismiss, dismiss}},
      {"\x1bOQt", {other, ranking}},
      {"\x1bxc", {other, cores}},
      {"\x1bq", {other}},
      {"\x1b[q", {other}},
      {"\x1b[1", {other}},
      {"\x1b", {other}},
      {"\xc3\xa7", {other, other}}};
  for (const auto& [bytes, keys] : cases) {
    EXPECT_EQ(keysOf(bytes), keys) << bytes;
  }
}

TEST(TerminalNotifications, OnlyWhatTheDelegateWantsShown) {
  struct : UserNotificationCenterDelegate {
    bool shouldPresentNotification(const UserNotification& notification) override {
      return notification.title != "unwanted";
    }
  } delegate;
  HeadlessUserNotificationCenter other;
  TerminalNotifications notifications(&other);
  notifications.deliverNotification({"without delegate", "", false, {}});
  notifications.setDelegate(&delegate);
  notifications.deliverNotification({"unwanted", "", false, {}});
  notifications.deliverNotification({"a", "\x1b[1m<b>%n\xff", false, {}});
  notifications.deliverNotification({"b", "", false, {}});
  EXPECT_EQ(notifications.take(), (std::vector<std::wstring>{L"a: ?[1m<b>%n?", L"b: "}));
  EXPECT_TRUE(notifications.take().empty());
  EXPECT_EQ(other.delivered().size(), 2U);
  notifications.setDelegate(nullptr);
  EXPECT_FALSE(other.hasDelegate());
}

TEST(Output, AStalledReaderDoesNotKeepASignalWaiting) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(pipe2(pipe.data(), O_CLOEXEC), 0);
  const int keyboard = posix_openpt(O_RDWR | O_NOCTTY);
  ASSERT_TRUE(grantpt(keyboard) == 0 && unlockpt(keyboard) == 0);
  const int terminal = open(ptsname(keyboard), O_RDWR | O_NOCTTY);
  WakeEvent signal;
  signal.wake();
  for (const auto& [reader, writer] : {std::pair(pipe[0], pipe[1]), {keyboard, terminal}}) {
    // Many times what either holds; without the interruption this would block for ever.
    Output(writer, signal.descriptor()).write(std::string(1U << 20U, 'x'));
    char first = '\0';
    EXPECT_EQ(read(reader, &first, 1), 1);
    // Those who share the file find it as it was.
    EXPECT_EQ(fcntl(writer, F_GETFL) & O_NONBLOCK, 0);
    close(reader);
    close(writer);
  }
}

}  // namespace
}  // namespace vel::test
