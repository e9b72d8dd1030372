// The alerts, of a busy process with a clock that is moved by hand, and their settings.
#include "alerts/VELPreferenceNotificationview.h"

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <map>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <tuple>
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
  std::shared_ptr<VELPreferenceNotificationview> view;
};

/// A check at so many seconds after the awakening.
struct Check {
  double time;
  const char* listed;  ///< the pids; null: there is no list
  const char* alerted = "";
  bool on = true;
};

/// A name, the minutes that are chosen, and the checks.
const std::tuple<const char*, std::int64_t, std::vector<Check>> kCourses[] = {
    {"longer than the duration, and again only after another one",
     10,
     {{0, "7"}, {600, "7"}, {601, "7", "7"}, {602, "7"}, {1202, "7"}, {1203, "7", "7"}}},
    {"one of two within 120 seconds, none within 120 of the awakening",
     1,
     {{0, "12 34"}, {120, "34 12"}, {121, "34 12", "12"}, {241, "34"}, {241.5, "34", "34"}}},
    {"two that go on take turns",
     1,
     {{0, "12 34"}, {121, "12 34", "12"}, {130, "12 34"}, {241.5, "12 34", "34"}}},
    {"one after the other, each for its own time",
     2,
     {{0, "12"}, {100, "12 34"}, {121, "12 34", "12"}, {245, "12 34", "34"}, {366, "12", "12"}}},
    {"a gap starts the time again",
     2,
     {{0, "5"}, {100, ""}, {110, "5"}, {230, "5"}, {231, "5", "5"}}},
    {"no list is an empty one", 1, {{0, "5"}, {60, nullptr}, {125, "5"}, {186, "5", "5"}}},
    {"switched off, everything stays as it is",
     2,
     {{0, "5"}, {50, "", "", false}, {125, "5", "", false}, {130, "5", "5"}, {140, "5"}}},
    {"the duration is in single precision",
     kManyMinutes,
     {{0, "5"}, {67'108'976, "5"}, {67'108'977, "5", "5"}}},
};

TEST(AlertCourse, TellsOfOneProcessAtATime) {
  for (const auto& [name, minutes, checks] : kCourses) {
    SCOPED_TRACE(name);
    Page page;
    page.alert.click();
    page.duration.choose(minutes);
    Texts expected;
    for (const Check& step : checks) {
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
  EXPECT_TRUE(threshold.isEnabled() && duration.isEnabled());
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
  textFor("814");
  EXPECT_EQ(machine.userNotificationCenter.delivered().back(),
            (UserNotification{.title = "CPU-Auslastung",
                              .informativeText = "[%@] [814] belastet die CPU zu stark",
                              .hasDefaultSound = true,
                              .actionButtonTitle = "Schließen"}));
  view.reset();
  EXPECT_FALSE(machine.userNotificationCenter.hasDelegate());
}

TEST_F(Alerts, TellOfAnotherGraphicsProcessor) {
  for (const bool inUse : {true, false}) {
    view->setGfxGPUCardInUse(inUse);
    EXPECT_TRUE(view->gfxGPUCardInUse() == inUse && gpu.isHidden() != inUse);
  }
  const std::string integrated = "Integrated GPU card now in use";
  const std::string discrete = "Discrete GPU card now in use";
  // Whether the user wants to know, what is reported, what the user is told.
  const std::tuple<bool, std::int64_t, Texts> reports[] = {
      {true, 1, {}},  // how it stands
      {true, 1, {}},         {true, 0, {integrated}}, {true, 0, {}},         {true, 2, {}},
      {true, 1, {discrete}}, {false, 0, {}},          {true, 0, {}},         {true, 1, {discrete}},
      {true, -1, {}},        {true, 0, {}},           {true, 1, {discrete}},
  };
  Texts expected;
  for (const auto& [wanted, type, told] : reports) {
    gpu.setState(wanted ? 1 : 0);
    view->setGpuType(type);
    EXPECT_EQ(view->gpuType(), type);
    EXPECT_EQ(alerts(), expected);  // the check box belongs to the main thread
    machine.queue.drain();
    expected.insert(expected.end(), told.begin(), told.end());
    EXPECT_EQ(alerts(), expected);
  }
  machine.bundle = moduleBundle({"de"});
  view->setGpuType(0);
  machine.queue.drain();
  EXPECT_EQ(machine.userNotificationCenter.delivered().back(),
            (UserNotification{.title = "Grafikprozessor gewechselt",
                              .informativeText = "Integrierter Grafikprozessor jetzt in Gebrauch",
                              .hasDefaultSound = true,
                              .actionButtonTitle = std::nullopt}));
  view->setGpuType(1);
  view.reset();
  machine.queue.drain();
  EXPECT_EQ(alerts().size(), expected.size() + 1);
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
  using Values = std::map<std::string, std::int64_t, std::less<>>;
  // What is stored; whether the alert is on, percent and minutes.
  const std::tuple<Values, bool, std::int64_t, std::int64_t> cases[] = {
      {{}, false, 30, 10},
      {{{"isNotifyMoreThan", 7}, {"NotifyMoreThanValue", 400}}, true, 400, 10},
      {{{"NotifyMoreThanValue", 33}, {"NotifyTimeValueMoreThan", 60}}, true, 400, 60},
      {{{"isNotifyMoreThan", 0}, {"NotifyTimeValueMoreThan", -1}, {"gfxGPUCardSwitch", 1}},
       false,
       30,
       60},
  };
  for (const auto& [stored, on, percent, minutes] : cases) {
    SCOPED_TRACE(percent);
    store.values = stored;
    view->setVelPreferencesDefault(stored.empty() ? nullptr : &store);
    EXPECT_EQ(std::exchange(log, {}), Texts{"threshold " + std::to_string(percent)});
    EXPECT_EQ(view->isActivated(), on);
    EXPECT_EQ(view->currentThresholdValue(), static_cast<float>(percent));
    EXPECT_EQ(duration.selectedTag(), minutes);
    EXPECT_TRUE(threshold.isEnabled() == on && duration.isEnabled() == on);
  }
  EXPECT_EQ(gpu.state(), 1);
}

}  // namespace
}  // namespace vel::test
