// The principal object: the order of its work with the model and the views, and the refresh cycle.
#include "module/VELModuleController.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/headless/HeadlessView.h"
#include "platform/host/Broadcasts.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

using Log = std::vector<std::string>;

struct ScriptedAlert : AlertSettingsView {
  [[nodiscard]] View& view() const override { return page; }
  [[nodiscard]] bool isActivated() const override { return on; }
  [[nodiscard]] float currentThresholdValue() const override { return 30.0F; }
  mutable HeadlessView<View> page;
  bool on = false;
};

struct ScriptedMain : MainViewController {
  explicit ScriptedMain(Log& mainLog) : log(mainLog) {}
  void setBundleIdentifier(const std::string& identifier) override { log.push_back(identifier); }
  void loadView() override { log.emplace_back("loadView, record " + bound()); }
  void updateBasicCpuCoresInformation(const CpuCoresInformation& information) override {
    log.push_back(std::to_string(information.logicalcpu) + " on " +
                  std::to_string(information.physicalcpu) + ", record " + bound());
  }
  void setVelPreferencesDefault(PreferencesStore* /*store*/) override {}
  void updateViews() override { log.emplace_back("updateViews"); }
  Property<const CPUData*>& cpuData() override { return record; }
  [[nodiscard]] View* statusbarview() const override { return nullptr; }
  [[nodiscard]] View* statusbarcompactview() const override { return &compact; }
  [[nodiscard]] View* statusbarExpandedview() const override { return &expanded; }
  [[nodiscard]] View* preferencesview() const override { return nullptr; }
  [[nodiscard]] AlertSettingsView* preferenceNotificationview() const override { return &alert; }
  [[nodiscard]] std::string bound() const { return record.get() == nullptr ? "none" : "held"; }

  Log& log;
  Property<const CPUData*> record;
  mutable HeadlessView<View> compact;
  mutable HeadlessView<View> expanded;
  mutable ScriptedAlert alert;
};

struct LoggedProcesses : VELCPUProcessesInfo {
  explicit LoggedProcesses(Log& processLog) : log(processLog) {}
  void getAllProcessInfos() override { log.emplace_back("table"); }
  std::optional<std::vector<ProcessEntry>> getTop5CPUProccessesAvgSinceProcessStart() override {
    log.emplace_back("top");
    return std::nullopt;
  }
  std::optional<std::vector<std::string>> getCPUProccessesForNotification() override {
    log.push_back("alert list at " + std::to_string(static_cast<int>(notificationThreshold())));
    return std::nullopt;
  }
  Log& log;
};

class Controller : public testing::Test {
 protected:
  Controller() {
    machine.kernel.count = machine.kernel.logical = 2;
    machine.kernel.physical = 1;
    machine.kernel.processors.assign(2, {});
    const auto create = [this](const std::string& nib, const Bundle& bundle) {
      EXPECT_EQ(&bundle, &machine.bundle);
      log.push_back(nib);
      auto owned = std::make_unique<ScriptedMain>(log);
      views = owned.get();
      return owned;
    };
    controller = std::make_unique<VELModuleController>(machine.bundle, ViewControllers{create, {}},
                                                       std::make_unique<LoggedProcesses>(log));
  }

  /// What one sample does, its views' answers included.
  Log sample() {
    log.clear();
    const int before = machine.kernel.tickReadings;
    controller->updateModel();
    EXPECT_EQ(machine.kernel.tickReadings, before + 1);
    controller->setIsProcessing(false);
    return std::exchange(log, {});
  }

  ScriptedPlatform machine;
  Log log;
  ScriptedMain* views = nullptr;
  std::unique_ptr<VELModuleController> controller;
};

TEST_F(Controller, EntersTheMainApplicationInOrder) {
  controller->initMainApp();
  EXPECT_EQ(log, (Log{"VELViewsController", "org.velbar.cpu", "loadView, record none",
                      "2 on 1, record none"}));
  EXPECT_EQ(views->record.get(), &controller->readings());
  EXPECT_EQ(controller->notificationCenterView(), nullptr);
  EXPECT_EQ(controller->moduleName(), "Cpu");
}

TEST_F(Controller, OffersTheUtilitiesThatTheDesktopHas) {
  const std::string utilities = "/Applications/Utilities/";
  const Image icon{"terminal"};
  machine.workspace.applications = {
      {utilities + "Console.app", {std::nullopt, {.exists = false, .note = "No log viewer"}}},
      {utilities + "Terminal.app", {icon, {.exists = true, .note = "xterm"}}}};
  machine.bundle = moduleBundle({"de"});
  const auto first = controller->moduleMenuPref();
  const auto menu = controller->moduleMenuPref();
  ASSERT_EQ(menu->items().size(), 3U);
  const MenuItem& console = menu->items()[1];
  EXPECT_EQ(console.title, "Konsole öffnen...");
  EXPECT_TRUE(!console.enabled && !console.mixedStateImage);
  const MenuItem& terminal = menu->items()[2];
  EXPECT_EQ(console.toolTip + " " + terminal.toolTip, "No log viewer xterm");
  EXPECT_TRUE(terminal.enabled && terminal.mixedStateImage == icon);
  for (const MenuItem& item : first->items()) {
    item.action(item);
  }
  MenuItem stranger;
  for (const std::int64_t tag : {-1, 3}) {
    stranger.tag = tag;
    terminal.action(stranger);
  }
  EXPECT_EQ(machine.workspace.openedPaths,
            (Log{utilities + "Activity Monitor.app", utilities + "Console.app",
                 utilities + "Terminal.app"}));
}

TEST_F(Controller, HandsAChangedProcessorCountToTheViewsInTheMiddleOfASample) {
  controller->initMainApp();
  // A refresh that a listener starts inside another does nothing.
  machine.notificationCenter.addObserver(
      this, broadcast::needUpdateCoreInfo,
      [this](const Notification&) { controller->updateModel(); });
  machine.kernel.logical = 1;
  EXPECT_EQ(sample(), (Log{"1 on 1, record held"}));
  machine.notificationCenter.removeObserver(this);
  controller.reset();
  log.clear();
  machine.notificationCenter.post(broadcast::needUpdateCoreInfo);
  machine.notificationCenter.post(broadcast::top5Type);  // the address sanitizer sees who answers
  EXPECT_EQ(log, Log{});
}

TEST_F(Controller, ASampleWaitsForTheViewsOfTheOneBefore) {
  controller->initMainApp();
  controller->updateModel();
  EXPECT_TRUE(controller->isProcessing());
  log.clear();
  controller->updateModel();
  controller->updateViews();
  EXPECT_EQ(machine.kernel.tickReadings, 1);
  EXPECT_EQ(log, (Log{"updateViews"}));
  EXPECT_FALSE(controller->isProcessing());
  sample();
}

TEST_F(Controller, ReadsProcessesOnlyForAPanelOrADueAlert) {
  controller->initMainApp();
  const std::string list = "alert list at 30";
  // Whether a panel is on the screen, alone or combined; whether the alert is on; whether it is
  // due.
  const std::tuple<bool, bool, bool, bool, Log> cases[] = {
      {false, false, true, false, {}},
      {false, false, true, true, {"table", list}},
      {true, false, false, true, {"table", "top"}},
      {true, true, true, false, {"table", "top"}},
      {false, true, true, true, {"table", "top", list}},
  };
  controller->isRefreshTimeOk();
  for (const auto& [expanded, compact, alert, due, work] : cases) {
    SCOPED_TRACE(testing::Message() << expanded << compact << alert << due);
    views->expanded.setWindowVisible(expanded);
    views->compact.setWindowVisible(compact);
    views->alert.on = alert;
    machine.clock.seconds += due ? 10.0 : 9.0;
    EXPECT_EQ(sample(), work);
    EXPECT_EQ(controller->isRefreshTimeOk(), due && !alert);  // only an alert uses a check up
    machine.clock.seconds += 10.0;
    controller->isRefreshTimeOk();  // the next row's time runs from here
  }
}

TEST_F(Controller, SeedsOnlyAThresholdThatWasNeverSet) {
  controller->initMainApp();
  views->alert.on = true;
  EXPECT_EQ(sample().back(), "alert list at 30");
  machine.notificationCenter.post(broadcast::notificationThresholdDidChange, 25);
  machine.clock.seconds += 10;
  EXPECT_EQ(sample().back(), "alert list at 25");
  machine.notificationCenter.post(broadcast::notificationThresholdDidChange, 0);
  machine.clock.seconds += 10;
  EXPECT_EQ(sample().back(), "alert list at 30");
}

TEST_F(Controller, AdmitsOneAlertCheckInTenSeconds) {
  const double start = machine.clock.seconds;
  const std::pair<double, bool> steps[] = {
      {0, true},    {9.999, false}, {10.0, true}, {19.999, false},  // a refused check moves nothing
      {20.0, true}, {-3600, false}, {29, false},  {30.0, true},     // the clock set back and forth
  };
  for (const auto& [offset, admitted] : steps) {
    machine.clock.seconds = start + offset;
    EXPECT_EQ(controller->isRefreshTimeOk(), admitted) << offset;
  }
}

}  // namespace
}  // namespace vel::test
