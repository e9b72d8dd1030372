// The CPU alert, with a clock that is moved by hand, and its settings.
#include "alerts/VELPreferenceNotificationview.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

#include "platform/headless/HeadlessControls.h"
#include "platform/host/Broadcasts.h"
#include "support/LoggingStore.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

using Texts = std::vector<std::string>;

/// Asked for an executable, it first lets other work in.
struct BusyKernel : ScriptedKernel {
  std::optional<std::string> executablePath(std::int32_t pid) override {
    meanwhile();
    return ScriptedKernel::executablePath(pid);
  }
  std::function<void()> meanwhile = [] {};
};

constexpr std::int64_t kManyMinutes = 1'118'483;

struct Page {
  Page() {
    machine.notificationCenter.addObserver(
        this, broadcast::notificationThresholdDidChange, [this](const Notification& notification) {
          log.push_back("threshold " + std::to_string(notification.object.value()));
        });
    duration.items().add({"", kManyMinutes});
    view = VELPreferenceNotificationview::fromNib(
        *nib, machine.bundle, [this](auto work) { machine.queue.async(std::move(work)); });
    view->awakeFromNib();
    view->setBundleIdentifier("org.velbar.cpu");
  }

  void check(double time, const char* listed) {
    machine.clock.seconds = awakening + time;
    if (listed != nullptr) {
      std::istringstream pids(listed);
      record.setProcessesForNotification(
          {std::istream_iterator<std::string>(pids), std::istream_iterator<std::string>()});
    }
    view->cpuData().set(listed != nullptr ? &record : nullptr);
    view->updateNotificationStatus();
  }

  /// The texts of all that have been delivered.
  [[nodiscard]] Texts alerts() const {
    Texts texts;
    for (const UserNotification& delivered : machine.userNotificationCenter.delivered()) {
      texts.push_back(delivered.informativeText);
    }
    return texts;
  }

  /// The text of the alert about a process that the machine knows or does not.
  std::string textFor(const char* pid) {
    const double time = machine.clock.seconds - awakening + 1000;
    check(time, pid);
    check(time + 1000, pid);
    return alerts().empty() ? "none" : alerts().back();
  }

  Texts taken() { return std::exchange(log, {}); }

  InstalledPlatform<BusyKernel, ManualClock> machine;
  double awakening = machine.clock.seconds;
  std::unique_ptr<Nib> nib = machine.nibLoader.load(machine.bundle, "VELViewsController");
  HeadlessButton& alert = machine.nibLoader.object<HeadlessButton>("btnNotifyMoreThan");
  HeadlessButton& gpu = machine.nibLoader.object<HeadlessButton>("btnNotifygfxGPUCardSwitch");
  HeadlessPopUpButton& threshold =
      machine.nibLoader.object<HeadlessPopUpButton>("popNotifyMoreThanValue");
  HeadlessPopUpButton& duration =
      machine.nibLoader.object<HeadlessPopUpButton>("popTimeWhereValueMoreThan");
  Texts log;
  LoggingStore store{log};
  CPUData record;
  std::unique_ptr<VELPreferenceNotificationview> view;
};

/// A check at so many seconds after the awakening.
struct Check {
  double time;
  const char* listed;  ///< the pids; null: there is no list
  const char* alerted = "";
  bool on = true;
};

struct Course {
  const char* name;
  std::int64_t minutes;
  std::vector<Check> checks;
};

const Course kCourses[] = {
    {"longer than the duration, and again only after another one",
     10,
     {{0, "812"},
      {600, "812"},
      {601, "812", "812"},
      {602, "812"},
      {1202, "812"},
      {1203, "812", "812"}}},
    {"none within 120 seconds of the awakening",
     1,
     {{0, "5"}, {61, "5"}, {120, "5"}, {120.5, "5", "5"}}},
    {"two at once, one of them later",
     1,
     {{0, "12 34"}, {130, "34 12", "12"}, {131, "34"}, {250, "34"}, {250.5, "34", "34"}}},
    {"one after the other, each for its own time",
     2,
     {{0, "12"}, {100, "12 34"}, {121, "12 34", "12"}, {245, "12 34", "34"}, {366, "12", "12"}}},
    {"a gap starts the time again",
     2,
     {{0, "5"}, {100, ""}, {110, "5"}, {230, "5"}, {230.5, "5", "5"}}},
    {"no list is an empty one", 1, {{0, "5"}, {60, nullptr}, {125, "5"}, {186, "5", "5"}}},
    {"switched off, everything stays as it is",
     2,
     {{0, "5"},
      {50, "", "", false},
      {125, "5", "", false},
      {130, "5", "5"},
      {200, "5", "", false},
      {300, "5"},
      {421, "5", "5"}}},
    {"the duration is in single precision",
     kManyMinutes,
     {{0, "5"}, {67'108'976, "5"}, {67'108'977, "5", "5"}}},
};

TEST(AlertCourse, TellsOfOneProcessAtATime) {
  for (const Course& course : kCourses) {
    SCOPED_TRACE(course.name);
    Page page;
    page.alert.click();
    page.duration.choose(course.minutes);
    Texts expected;
    for (const Check& step : course.checks) {
      SCOPED_TRACE(step.time);
      page.alert.setState(step.on ? 1 : 0);
      page.check(step.time, step.listed);
      if (*step.alerted != '\0') {
        expected.push_back(" [" + std::string(step.alerted) + "] is using too much CPU");
      }
      EXPECT_EQ(page.alerts(), expected);
    }
  }
}

struct Alerts : testing::Test, Page {};

TEST_F(Alerts, NameTheExecutable) {
  alert.click();
  machine.kernel.executables = {
      {812, "/opt/example/bin/Example"}, {813, "/tmp/%s%@<b>\n%d"}, {814, "[%@]"}, {815, "/bin/"}};
  for (const auto& [pid, name] : {std::pair{"812", "Example [812]"},
                                  {"813", "%s%@<b>\n%d [813]"},
                                  {"814", "[%@] [814]"},
                                  {"815", " [815]"},
                                  {"816", " [816]"},
                                  {"4294968108", " [4294968108]"}}) {
    EXPECT_EQ(textFor(pid), std::string(name) + " is using too much CPU");
  }
  machine.bundle = moduleBundle({"de"});
  EXPECT_EQ(textFor("814"), "[%@] [814] belastet die CPU zu stark");
  EXPECT_EQ(machine.userNotificationCenter.delivered().back(),
            (UserNotification{.title = "CPU-Auslastung",
                              .informativeText = "[%@] [814] belastet die CPU zu stark",
                              .hasDefaultSound = true,
                              .actionButtonTitle = "Schließen"}));
  view.reset();
  EXPECT_FALSE(machine.userNotificationCenter.hasDelegate());
}

TEST_F(Alerts, AreNotCheckedInsideACheck) {
  alert.click();
  int asked = 0;
  machine.kernel.meanwhile = [&] {
    if (++asked < 3) {
      view->updateNotificationStatus();
    }
  };
  textFor("812");
  EXPECT_EQ(alerts().size(), 1U);
}

TEST_F(Alerts, AreLoaded) {
  EXPECT_FALSE(view->isActivated() || threshold.isEnabled() || duration.isEnabled());
  EXPECT_TRUE(gpu.isHidden());
  EXPECT_EQ(view->gpuType(), -1);
  struct Case {
    std::map<std::string, std::int64_t, std::less<>> stored;
    std::int64_t on, percent, minutes, gpu;
  };
  const Case cases[] = {
      {{}, 0, 30, 10, 0},
      {{{"isNotifyMoreThan", 7}, {"NotifyMoreThanValue", 400}, {"gfxGPUCardSwitch", 1}},
       1,
       400,
       10,
       1},
      {{{"NotifyMoreThanValue", 33}, {"NotifyTimeValueMoreThan", 60}}, 1, 400, 60, 1},
      {{{"isNotifyMoreThan", 0}, {"NotifyTimeValueMoreThan", -1}}, 0, 30, 60, 1},
  };
  for (const auto& [stored, on, percent, minutes, gpuState] : cases) {
    SCOPED_TRACE(percent);
    store.values = stored;
    view->setVelPreferencesDefault(stored.empty() ? nullptr : &store);
    EXPECT_EQ(taken(), Texts{"threshold " + std::to_string(percent)});
    EXPECT_EQ(view->isActivated(), on != 0);
    EXPECT_EQ(view->currentThresholdValue(), static_cast<float>(percent));
    EXPECT_EQ(duration.selectedTag(), minutes);
    EXPECT_EQ(gpu.state(), gpuState);
    EXPECT_TRUE(threshold.isEnabled() == (on != 0) && duration.isEnabled() == (on != 0));
  }
}

TEST_F(Alerts, AreSavedLaterAndBroadcastAtOnce) {
  view->setVelPreferencesDefault(&store);
  taken();
  alert.click();
  EXPECT_TRUE(threshold.isEnabled() && duration.isEnabled());
  threshold.choose(50);
  EXPECT_EQ(taken(), Texts{"threshold 50"});
  duration.choose(60);
  gpu.click();
  alert.click();
  EXPECT_FALSE(threshold.isEnabled() || duration.isEnabled());
  EXPECT_EQ(taken(), Texts{});
  machine.queue.drain();
  // As the controls stand by then.
  EXPECT_EQ(taken(), (Texts{"isNotifyMoreThan = 0", "NotifyMoreThanValue = 50",
                            "NotifyTimeValueMoreThan = 60", "gfxGPUCardSwitch = 1",
                            "isNotifyMoreThan = 0"}));
}

}  // namespace
}  // namespace vel::test
