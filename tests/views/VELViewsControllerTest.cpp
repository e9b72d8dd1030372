// The settings, from the module's own nib: what is broadcast, what is written, and in which order;
// and the widget.
#include "views/preferences/VELViewsController.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <semaphore>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include "gpu/GSGPU.h"
#include "gpu/GSMux.h"
#include "module/VELModuleController.h"
#include "platform/foundation/GlobalQueue.h"
#include "platform/headless/HeadlessControls.h"
#include "platform/headless/HeadlessDrawing.h"
#include "platform/host/Broadcasts.h"
#include "platform/host/VELGraphMultiple.h"
#include "support/LoggingStore.h"
#include "support/ScriptedPlatform.h"
#include "support/TemporaryDirectory.h"
#include "views/panels/VELNCViewsController.h"

namespace vel::test {
namespace {

using Log = std::vector<std::string>;
using Values = std::map<std::string, std::int64_t, std::less<>>;

class Preferences : public testing::Test {
 protected:
  Preferences() {
    GSGPU::forget();
    using namespace broadcast;
    for (const auto name :
         {iconStatusChanged, iconSubItemsChanged, showGraph, menuBarGaugeType, top5Type,
          coresDisplayed, gfxGPUStatusChanged, notificationThresholdDidChange}) {
      machine.notificationCenter.addObserver(this, name, [this](const Notification& notification) {
        log.push_back(std::string(notification.name.substr(8)) + " " +
                      std::to_string(notification.object.value()));
      });
    }
    machine.kernel.count = machine.kernel.logical = 8;
    machine.kernel.physical = 4;
  }

  ~Preferences() override { GSMux::switcherClose(); }
  Preferences(const Preferences&) = delete;
  Preferences& operator=(const Preferences&) = delete;

  void start(const Bundle& bundle, PreferencesStore* early = nullptr) {
    const auto views = [](const auto& nib, const Bundle& nibBundle) {
      return std::make_shared<VELViewsController>(nib, nibBundle);
    };
    module = std::make_unique<VELModuleController>(bundle, ViewControllers{views, {}});
    module->setVelPreferencesDefault(early);
    module->initMainApp();
  }

  void startWithStore() {
    start(machine.bundle);
    module->setVelPreferencesDefault(&store);
    drain();
    log.clear();
  }

  /// Through the global queue, which is the same here, to the main queue.
  void drain() {
    machine.queue.drain();
    machine.queue.drain();
  }

  Log taken() { return std::exchange(log, {}); }

  template <typename T>
  T& object(std::string_view name) {
    return machine.nibLoader.object<T>(name);
  }

  /// What the badge says; nothing while it is hidden.
  std::string shownGPU() {
    const auto& badge = object<HeadlessView<View>>("gfxGPUView");
    HeadlessDrawing drawing;
    badge.draw(drawing);
    return badge.isHidden() ? "" : drawing.texts().front();
  }

  ScriptedPlatform machine;
  Log log;
  LoggingStore store{log};
  std::unique_ptr<VELModuleController> module;
};

TEST_F(Preferences, AreLoadedAndBroadcastInOrderAndNeverWritten) {
  store.values = {{"showDisplay", 0}};
  start(machine.bundle, &store);  // kept, but too early for the views
  EXPECT_EQ(module->velPreferencesDefault(), &store);
  EXPECT_EQ(taken(), (Log{"IconStatusChanged 1", "IconSubItemsChanged 7", "ShowGraph 0",
                          "MenuBarGaugeType 0", "Top5Type 1", "CoresDisplayed 0"}));
  EXPECT_EQ(machine.nibProblems, Log{});
  EXPECT_EQ(module->statusbarView(), &object<View>("statusbarview"));
  EXPECT_EQ(module->statusbarCombinedView(), &object<View>("statusbarcompactview"));
  EXPECT_EQ(module->statusbarStandAloneView(), &object<View>("statusbarExpandedview"));
  EXPECT_EQ(module->preferencesModuleView(), &object<View>("preferencesview"));
  EXPECT_EQ(module->preferenceNotificationView(), &object<View>("preferenceNotificationview"));
  EXPECT_TRUE(object<View>("gpugfxTxtField").isHidden());
  EXPECT_TRUE(object<View>("gpugfxBtn").isHidden());

  constexpr std::int64_t k2To32 = std::int64_t{1} << 32U;
  // What is stored, and what is posted: the threshold, and then in the order above.
  const std::pair<Values, std::vector<int>> cases[] = {
      {{{"showDisplay", 1}, {"subItemsDisplayed", 0}, {"gfxGPU", 1}}, {30, 1, 1, 0, 0, 1, 0}},
      {{{"showDisplay", 0}, {"subItemsDisplayed", 1}}, {30, 0, 0, 0, 0, 1, 0}},
      {{{"showGraph", -7}, {"gaugeType", 3}, {"cpuTop5Type", 0}, {"cpucoresdisplayed", 2}},
       {30, 1, 7, 1, 3, 0, 2}},
      // What no control offers: the low 32 bits of some are tags.
      {{{"showDisplay", k2To32 + 1}, {"gaugeType", -1}, {"cpucoresdisplayed", k2To32}},
       {30, 0, 6, 0, 3, 0, 2}},
      {{}, {30, 1, 7, 0, 3, 0, 0}},  // without a store
  };
  for (std::size_t i = 0; const auto& [stored, posted] : cases) {
    SCOPED_TRACE(i++);
    store.values = stored;
    module->setVelPreferencesDefault(stored.empty() ? nullptr : &store);
    std::vector<int> values;
    for (const auto& line : taken()) {
      values.push_back(std::stoi(line.substr(line.find(' '))));
    }
    EXPECT_EQ(values, posted);
    EXPECT_EQ(object<HeadlessButton>("showGauge").state(), (posted[2] & 2) / 2);
    EXPECT_EQ(object<HeadlessButton>("showModuleName").state(), (posted[2] & 4) / 4);
  }
  object<HeadlessButton>("btnShowGraph").click();
  drain();
  EXPECT_EQ(taken(), Log{"ShowGraph 1"});
}

TEST_F(Preferences, AreBroadcastBeforeTheyAreSaved) {
  startWithStore();
  const auto click = [this](const char* name) {
    return [this, name] { object<HeadlessButton>(name).click(); };
  };
  const auto choose = [this](const char* name, std::int64_t tag) {
    return [this, name, tag] { object<HeadlessPopUpButton>(name).choose(tag); };
  };
  // A change, and what comes of it at once and later.
  const std::tuple<std::function<void()>, Log, Log> cases[] = {
      {[this] { object<HeadlessMatrix>("showDisplayButton").choose(0); },
       {},
       {"IconStatusChanged 0", "showDisplay = 0", "IconSubItemsChanged 6",
        "subItemsDisplayed = 6"}},
      {click("showGauge"), {}, {"IconSubItemsChanged 4", "subItemsDisplayed = 4"}},
      {click("showModuleName"), {}, {"IconSubItemsChanged 0", "subItemsDisplayed = 0"}},
      {click("btnShowGraph"), {}, {"ShowGraph 1", "showGraph = 1"}},
      {click("gpugfxBtn"), {}, {"GFXGPUStatusChanged 1", "gfxGPU = 1"}},
      {choose("popupGaugeType", 2), {"MenuBarGaugeType 2"}, {"gaugeType = 2"}},
      {choose("popupCPUTop5Type", 0), {"Top5Type 0"}, {"cpuTop5Type = 0"}},
      {choose("popupCPUCoresDisplayed", 1), {"CoresDisplayed 1"}, {"cpucoresdisplayed = 1"}},
      {click("btnNotifyMoreThan"), {}, {"isNotifyMoreThan = 1"}},
      {choose("popNotifyMoreThanValue", 50),
       {"NotificationThresholdDidChange 50"},
       {"NotifyMoreThanValue = 50"}},
      {choose("popTimeWhereValueMoreThan", 60), {}, {"NotifyTimeValueMoreThan = 60"}},
      {click("btnNotifygfxGPUCardSwitch"), {}, {"gfxGPUCardSwitch = 1"}},
  };
  for (const auto& [change, atOnce, later] : cases) {
    SCOPED_TRACE(later.front());
    change();
    EXPECT_EQ(taken(), atOnce);
    drain();
    EXPECT_EQ(taken(), later);
  }
  // What is saved is how the control stands then.
  for (const char* name :
       {"btnShowGraph", "btnShowGraph", "btnNotifyMoreThan", "btnNotifyMoreThan"}) {
    click(name)();
  }
  drain();
  EXPECT_EQ(taken(), (Log{"ShowGraph 1", "showGraph = 1", "ShowGraph 1", "showGraph = 1",
                          "isNotifyMoreThan = 1", "isNotifyMoreThan = 1"}));
}

TEST_F(Preferences, TurnTheWatchingOfTheGraphicsProcessorOnAndOff) {
  using namespace broadcast;
  machine.switchingDriver.services = {{5}};
  store.values = {{"gfxGPU", 1}, {"gfxGPUCardSwitch", 1}};
  start(machine.bundle);
  EXPECT_EQ(taken().back(), "GFXGPUStatusChanged 0");
  EXPECT_EQ(machine.displays.callbacks(), 0U);
  for (const char* name : {"gpugfxTxtField", "gpugfxBtn", "btnNotifygfxGPUCardSwitch"}) {
    EXPECT_FALSE(object<View>(name).isHidden()) << name;
  }

  // Watching starts while the settings are loaded, in the mode for it, and the type comes first.
  auto& button = object<HeadlessButton>("gpugfxBtn");
  machine.switchingDriver.setFeature(7, 1);
  machine.notificationCenter.addObserver(&button, gfxGPUStatusChanged, [this](const auto&) {
    machine.switchingDriver.write("broadcast");
  });
  machine.switchingDriver.taken();
  module->setVelPreferencesDefault(&store);
  EXPECT_EQ(taken().back(), "GFXGPUStatusChanged 1");
  EXPECT_EQ(machine.switchingDriver.taken(),
            (Log{"1: 2 1 1 1", "1: 2 1 5 0", "1: 2 1 4 1", "1: 3 1 7", "broadcast"}));
  drain();
  EXPECT_EQ(shownGPU(), "i");

  // One switch, of which two displays tell, shows and is told of once; a refresh asks nobody.
  machine.switchingDriver.setFeature(7, 0);
  machine.displays.reconfigure();
  machine.displays.reconfigure();
  drain();
  EXPECT_EQ(machine.switchingDriver.taken(), (Log{"1: 3 1 7", "1: 3 1 7"}));
  EXPECT_EQ(shownGPU(), "d");
  ASSERT_EQ(machine.userNotificationCenter.delivered().size(), 1U);
  EXPECT_EQ(machine.userNotificationCenter.delivered()[0].informativeText,
            "Discrete GPU card now in use");
  module->updateModel();
  module->updateViews();
  EXPECT_EQ(machine.switchingDriver.taken(), Log{});
  EXPECT_EQ(machine.displays.searches, 1);

  button.click();
  drain();
  EXPECT_EQ(taken(), (Log{"GFXGPUStatusChanged 0", "gfxGPU = 0"}));
  EXPECT_EQ(machine.displays.callbacks(), 0U);
  EXPECT_EQ(shownGPU(), "");
  EXPECT_EQ(machine.switchingDriver.taken(), Log{"broadcast"});  // the mode stays
  machine.notificationCenter.removeObserver(&button);
  button.click();
  module.reset();
  drain();
  EXPECT_EQ(machine.displays.callbacks(), 0U);
}

TEST_F(Preferences, AreNotReachedByAGraphicsProcessorOnceTheyHaveGone) {
  GlobalQueue global;
  Platform platform = machine.platformWith(global);
  const PlatformInstallation installation(platform);
  machine.switchingDriver.services = {{5}};
  store.values = {{"gfxGPU", 1}, {"gfxGPUCardSwitch", 1}};
  constexpr int kTimes = 1000;
  std::counting_semaphore<> turns(0);
  std::thread events([this, &turns] {
    for (std::uint64_t i = 0; i < kTimes * 3; ++i) {
      turns.acquire();
      machine.switchingDriver.setFeature(7, i % 2);
      machine.displays.reconfigure();
    }
  });
  for (int i = 0; i < kTimes; ++i) {
    turns.release();
    startWithStore();
    turns.release();
    object<HeadlessButton>("gpugfxBtn").click();
    global.waitUntilIdle();
    machine.queue.drain();
    object<HeadlessButton>("gpugfxBtn").click();
    global.waitUntilIdle();
    machine.queue.drain();
    // Under way to the report, which the end of the controller then meets.
    const int before = machine.switchingDriver.answers;
    turns.release();
    for (int yields = 0; machine.switchingDriver.answers == before; ++yields) {
      ASSERT_LT(yields, 10'000'000);
      std::this_thread::yield();
    }
    module.reset();
    machine.queue.drain();
  }
  events.join();
  global.waitUntilIdle();
  EXPECT_EQ(machine.displays.callbacks(), 0U);
  const Log asked = machine.switchingDriver.taken();
  EXPECT_GT(std::count_if(asked.begin(), asked.end(),
                          [](const auto& line) { return line.ends_with(": 3 1 7"); }),
            kTimes);
}

TEST_F(Preferences, ChooseTheGraphsThatARefreshFeeds) {
  startWithStore();
  machine.kernel.processors.assign(8, {.user = 2, .system = 1, .idle = 5});
  for (const char* panel : {"statusbarcompactview", "statusbarExpandedview"}) {
    object<HeadlessView<View>>(panel).setWindowVisible(true);
  }
  module->updateModel();
  module->updateViews();
  const auto& histories = object<VELGraphArraysMultiple>("grapharrayobjMultiple");
  EXPECT_EQ(histories.seriesCount(), 1U);
  EXPECT_EQ(histories.value(0, 0), 37.5F);
  EXPECT_EQ(object<VELMenuBarText>("percentageLabel").stringValue(), "38%");
  EXPECT_EQ(object<TextField>("compactUserCPULabel").stringValue(), "25.0%");
  EXPECT_EQ(object<TextField>("expandedUserCPULabel").stringValue(), "25.0%");
  for (const auto& [tag, series] : {std::pair{1, 4U}, {2, 8U}}) {
    object<HeadlessPopUpButton>("popupCPUCoresDisplayed").choose(tag);
    module->updateViews();
    drain();
    EXPECT_EQ(object<VELGraphMultiple>("compactCPUGraph").numberOfGraphs(), series);
    EXPECT_EQ(object<VELGraphMultiple>("expandedCPUGraph").numberOfGraphs(), series);
    EXPECT_EQ(histories.seriesCount(), series);
    EXPECT_EQ(histories.value(series - 1, 0), 37.5F);
  }
  machine.notificationCenter.post(broadcast::coresDisplayed, 3);
  module->updateViews();
  EXPECT_EQ(histories.size(0), 3U);
}

TEST_F(Preferences, ChooseTheProcessesThatAnAlertTellsOf) {
  startWithStore();
  object<HeadlessButton>("btnNotifyMoreThan").click();
  object<HeadlessPopUpButton>("popTimeWhereValueMoreThan").choose(1);
  auto& process = machine.kernel.processes[812];
  const auto started = static_cast<std::int64_t>(machine.clock.seconds) - 1000;
  process.record = {.pid = 812, .parent = 1, .startSeconds = started, .command = {'c'}};
  process.figures.emplace();
  object<HeadlessPopUpButton>("popNotifyMoreThanValue").choose(20);
  for (int i = 0; i < 15; ++i) {
    machine.clock.seconds += 10;
    process.figures->userNanoseconds += 2'500'000'000;  // a quarter of a core
    module->updateModel();
    module->updateViews();
  }
  EXPECT_EQ(machine.userNotificationCenter.delivered().size(), 1U);
}

/// A queue whose tasks stay where they are after they have run.
struct LingeringQueue : Queue {
  void async(Task task) override { tasks.push_back(std::move(task)); }
  std::vector<Task> tasks;
};

TEST_F(Preferences, AreSavedThoughTheModuleHasGone) {
  LingeringQueue global;
  Platform platform = machine.platformWith(global);
  const PlatformInstallation installation(platform);
  startWithStore();
  const auto life = std::make_shared<int>();
  object<View>("view").setDidDraw([life](DrawingContext&) {});
  object<HeadlessMatrix>("showDisplayButton").choose(0);
  object<HeadlessButton>("btnNotifyMoreThan").click();
  module.reset();
  ASSERT_EQ(global.tasks.size(), 2U);
  global.tasks[1]();
  global.tasks[0]();
  machine.queue.drain();
  const Log saved = taken();
  EXPECT_EQ(saved.front(), "isNotifyMoreThan = 1");
  EXPECT_EQ(saved.back(), "subItemsDisplayed = 6");
  // Had they stayed with the global queue's tasks, its threads would destroy the views.
  EXPECT_EQ(life.use_count(), 1);
}

TEST_F(Preferences, FollowReportsFromOtherThreads) {
  startWithStore();
  machine.notificationCenter.removeObserver(this);
  std::thread reports([this] {
    for (std::uint32_t i = 0; i <= 300; ++i) {
      machine.kernel.logical = 1 + i % 8;
      machine.notificationCenter.post(broadcast::needUpdateCoreInfo);
      machine.notificationCenter.post(broadcast::coresDisplayed, i % 3 + 2);
    }
  });
  for (int i = 0; i < 300; ++i) {
    module->updateViews();
    machine.queue.drain();
  }
  reports.join();
  machine.queue.drain();
  EXPECT_EQ(object<VELGaugeViewMultiple>("gaugeView").gauges().size(), 5U);
}

TEST_F(Preferences, AreMissingAsAWholeWithAnOutlet) {
  // What is altered in the main nib, and the problem.
  const std::tuple<std::string, const char*, const char*> cases[] = {
      {R"("showGauge")", R"("other")", R"(outlet "showGauge" is missing, expected a QCheckBox)"},
      {R"("gaugeView")", R"("other")", R"(outlet "gaugeView" is missing, expected a VELGauge)"},
      {R"("btnNotifyMoreThan")", R"("other")", R"("btnNotifyMoreThan" is missing)"},
      {R"("compactIdleCPULabel")", R"("other")", R"("compactIdleCPULabel" is missing)"},
      {R"("Process3Label")", R"("other")",
       R"("Process3Label" is missing, expected a VELTextFieldKillApp)"},
      {R"(<string notr="true">grapharrayobjM)", "<string>m", "Multiple"},
      {"<ui", "<iu", "VELViewsController.ui:"},
  };
  const std::filesystem::path source = VEL_MODULE_RESOURCES;
  for (const auto& [from, to, problem] : cases) {
    SCOPED_TRACE(problem);
    std::ifstream file(source / "VELViewsController.ui");
    std::string text(std::istreambuf_iterator<char>(file), {});
    const TemporaryDirectory directory;
    std::filesystem::copy_file(source / "Info.strings", directory.path + "/Info.strings");
    std::ofstream(directory.path + "/VELViewsController.ui")
        << text.replace(text.find(from), from.size(), to);
    const Bundle altered = openBundle(directory.path.c_str());
    machine.nibProblems.clear();
    start(altered);
    ASSERT_EQ(machine.nibProblems.size(), 1U);
    EXPECT_NE(machine.nibProblems[0].find(problem), std::string::npos) << machine.nibProblems[0];
    module->setVelPreferencesDefault(&store);
    machine.notificationCenter.post(broadcast::needUpdateCoreInfo);
    module->updateModel();
    module->updateViews();
    EXPECT_FALSE(module->statusbarView() || module->statusbarCombinedView() ||
                 module->statusbarStandAloneView() || module->preferencesModuleView() ||
                 module->preferenceNotificationView());
    EXPECT_EQ(taken(), Log{});
    module.reset();
  }
}

TEST(Widget, IsTheRootOfItsNibAndAllThatIsShown) {
  ScriptedPlatform machine;
  const auto views = [](const auto& nib, const Bundle& nibBundle) {
    return std::make_unique<VELNCViewsController>(nib, nibBundle);
  };
  VELModuleController module(machine.bundle, {{}, views});
  module.initNCApp();
  EXPECT_EQ(module.notificationCenterView(), &machine.nibLoader.object<View>("view"));
  EXPECT_FALSE(module.statusbarView() || module.preferenceNotificationView());
  EXPECT_EQ(machine.nibProblems, Log{});
  machine.kernel.physical = machine.kernel.count = machine.kernel.logical = 2;
  machine.kernel.processors = {{.user = 1}, {.idle = 1}};
  machine.notificationCenter.post(broadcast::needUpdateCoreInfo);  // the topology is read anew
  module.updateModel();
  module.updateViews();
  EXPECT_FALSE(module.isProcessing());
  EXPECT_EQ(module.readings().number(ProcessorReading::idleCPUPhy, 1), 1.0F);
}

}  // namespace
}  // namespace vel::test
