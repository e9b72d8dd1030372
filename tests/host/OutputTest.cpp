// JSON that is well formed whatever a process is called, what is typed, and readers that stall.
#include "host/terminal/Output.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "host/WakeEvent.h"
#include "host/terminal/JsonLines.h"
#include "host/terminal/Keyboard.h"

namespace vel::test {
namespace {

TEST(JsonLines, AreAsciiAndExactWhateverTheRecordHolds) {
  CPUData record;
  std::string text = "old";
  const UserOf userOf = [](const std::string& pid) { return "\"u" + pid; };
  writeJson(record, userOf, text);
  EXPECT_EQ(text, "{}");
  for (std::size_t i = 0; i < kReadings; ++i) {
    record.set(static_cast<Reading>(i), static_cast<float>(i) / 10.0F);
  }
  for (std::size_t i = 0; i < kProcessorReadings; ++i) {  // indices below 12 stay absent
    record.set(static_cast<ProcessorReading>(i), 12, static_cast<float>(i));
  }
  record.set(Reading::systemCPU, std::numeric_limits<float>::quiet_NaN());
  record.set(Reading::niceCPU, 1e-30F);
  record.setUpTime({13, -2, 0, 59});
  record.setTopMemProcess(
      {{"\"\\\n\x1b]0;\x7f\xc2\x9b", "1", "-"}, {"\xff\xc3(日", "2", "1.5", 0.015F, 14}});
  record.setProcessesForNotification({"7", "8"});
  writeJson(record, userOf, text);
  EXPECT_EQ(text, R"({"userCPU":0,"systemCPU":null,"idleCPU":0.2,"niceCPU":1e-30,"tasksCount":0.4,)"
                  R"("threadsCount":0.5,"loadAverage0":0.6,"loadAverage1":0.7,"loadAverage2":0.8,)"
                  R"("userCPUAll12":0,"systemCPUAll12":1,"idleCPUAll12":2,"niceCPUAll12":3,)"
                  R"("userCPUPhy12":4,"systemCPUPhy12":5,"idleCPUPhy12":6,"niceCPUPhy12":7,)"
                  R"("upTime":{"month":13,"day":-2,"hour":0,"minute":59},"topMemProcess":[)"
                  R"({"name":"\"\\\n\u001b]0;\u007f\u009b","pid":"1","avg cpu time":"-","share":0,)"
                  R"("processes":0,"user":"\"u1"},)"
                  R"({"name":"\ufffd\ufffd(\u65e5","pid":"2","avg cpu time":"1.5",)"
                  R"("share":0.015,"processes":14,"user":"\"u2"}],)"
                  R"("processesForNotification":["7","8"]})");
}

TEST(Keyboard, LettersInAFunctionKeyAreNotTyped) {
  using enum Key;
  const std::map<std::string, std::vector<Key>> cases = {
      {"qQtTcCgG?hH", {quit, quit, ranking, ranking, cores, cores, graph, graph, help, help, help}},
      {"jz\x1b[1;5CQ", {other, other, other, quit}},
      {"aA<>[]\x1b[]xX",
       {alert, alert, lowerThreshold, higherThreshold, shorterDuration, longerDuration, other,
        dismiss, dismiss}},
      {"\x1bOQt", {other, ranking}},
      {"\x1bxc", {other, cores}},
      {"\x1bq", {other}},
      {"\x1b[1", {other}},
      {"\x1b", {escape}},
      {"\x1b[A\x1bOA\x1b[B\x1bOBkKyYfF", {up, up, down, down, end, end, yes, yes, force, force}},
      {"\x1b[1;5A\x1b\x1b[A\x1bk", {other, other, other}},
      {"\xc3\xa7", {other, other}}};
  for (const auto& [bytes, keys] : cases) {
    EXPECT_EQ(keysOf(bytes), keys) << bytes;
  }
}

TEST(Output, AStalledReaderDoesNotKeepASignalWaiting) {
  std::array<int, 2> pipe{};
  ASSERT_EQ(pipe2(pipe.data(), O_CLOEXEC), 0);
  WakeEvent signal;
  signal.wake();
  // Many times what it holds; without the interruption this would block for ever.
  Output(pipe[1], signal.descriptor()).write(std::string(1U << 20U, 'x'));
  char first = '\0';
  EXPECT_EQ(read(pipe[0], &first, 1), 1);
  // Those who share the file find it as it was.
  EXPECT_EQ(fcntl(pipe[1], F_GETFL) & O_NONBLOCK, 0);
  close(pipe[0]);
  close(pipe[1]);
}

}  // namespace
}  // namespace vel::test
