// The settings that the model follows, its load, uptime and process lists, and the guard that its
// updates share.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/VELModuleModel.h"
#include "platform/host/Broadcasts.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

using Rows = std::optional<std::vector<ProcessEntry>>;
using Pids = std::optional<std::vector<std::string>>;

class ScriptedProcesses : public VELCPUProcessesInfo {
 public:
  void getAllProcessInfos() override {
    ++readings;
    runInside();
  }
  Rows getTop5CPUProccesses() override { return current; }
  Rows getTop5CPUProccessesAvgSinceProcessStart() override { return average; }
  Pids getCPUProccessesForNotification() override {
    ++alertLists;
    runInside();
    return alert;
  }

  void runInside() {
    if (const auto action = std::exchange(inside, nullptr)) {
      action();
    }
  }

  Rows current{{{"current", "1", "0.0%"}}};
  Rows average{{{"average", "1", "0.0"}}};
  Pids alert{{"42"}};
  std::function<void()> inside;  ///< runs once, inside the next call
  int readings = 0;
  int alertLists = 0;
};

class Lifecycle : public testing::Test {
 protected:
  [[nodiscard]] std::string topList() const {
    const auto& list = model.record().topMemProcess();
    return !list ? "none" : list->empty() ? "empty" : list->front().name;
  }
  void post(std::string_view name, std::optional<std::int64_t> object = std::nullopt) {
    machine.notificationCenter.post(name, object);
  }

  ScriptedPlatform machine;
  std::unique_ptr<ScriptedProcesses> owned = std::make_unique<ScriptedProcesses>();
  ScriptedProcesses& processes = *owned;
  VELModuleModel model{std::move(owned)};
};

TEST_F(Lifecycle, FollowsTheBroadcastsOfTheThreshold) {
  post(broadcast::notificationThresholdDidChange, 30);
  EXPECT_EQ(model.currentThresholdValue(), 30.0F);
  post(broadcast::notificationThresholdDidChange);
  EXPECT_EQ(model.currentThresholdValue(), 0.0F);
}

TEST_F(Lifecycle, TheModeChoosesTheList) {
  using Mode = std::optional<std::int64_t>;
  const std::pair<Mode, const char*> steps[] = {
      {2, "none"}, {0, "average"}, {1, "current"}, {2, "current"}, {std::nullopt, "average"}};
  for (const auto& [mode, list] : steps) {
    post(broadcast::top5Type, mode);
    model.updateTopProcess();
    EXPECT_EQ(topList(), list);
  }
  EXPECT_EQ(processes.readings, 5);  // mode 2 reads the table all the same
  processes.average.reset();
  model.updateTopProcess();
  EXPECT_EQ(topList(), "average");
  processes.average.emplace();
  model.updateTopProcess();
  EXPECT_EQ(topList(), "empty");
}

TEST_F(Lifecycle, TheAlertListReadsTheTableOnlyWithoutAPanel) {
  const auto& pids = model.record().processesForNotification();
  model.updateTopProcessExtraNotif();
  EXPECT_EQ(processes.readings, 0);
  EXPECT_EQ(pids, processes.alert);
  processes.alert.reset();
  model.updateProcessOnlyNotif();
  EXPECT_EQ(processes.readings, 1);
  EXPECT_EQ(pids->size(), 1U);
  processes.alert.emplace();
  model.updateProcessOnlyNotif();
  EXPECT_TRUE(pids->empty());
}

TEST_F(Lifecycle, NoUpdateRunsInsideAnother) {
  const auto work = [this] {
    return machine.kernel.tickReadings + processes.readings + processes.alertLists;
  };
  using Update = void (VELModuleModel::*)();
  const Update updates[] = {&VELModuleModel::updateModel, &VELModuleModel::updateTopProcess,
                            &VELModuleModel::updateProcessOnlyNotif,
                            &VELModuleModel::updateTopProcessExtraNotif};
  const auto updateAll = [&] {
    const int before = work();
    for (const auto update : updates) {
      (model.*update)();
    }
    return work() - before;
  };
  const int whole = updateAll();
  machine.notificationCenter.addObserver(this, broadcast::needUpdateCoreInfo,
                                         [this](const Notification&) { processes.runInside(); });
  for (const auto outer : updates) {
    machine.kernel.logical = machine.kernel.logical.value_or(0) + 1;  // updateModel posts
    int inside = -1;
    processes.inside = [&] { inside = updateAll(); };
    (model.*outer)();
    EXPECT_EQ(inside, 0);
    EXPECT_EQ(updateAll(), whole);  // nor does the flag stay set
  }
  machine.notificationCenter.removeObserver(this);
}

TEST_F(Lifecycle, LoadAndUptimeAreStoredAndSurviveFailures) {
  const auto& data = model.record();
  model.updateModel();
  EXPECT_FALSE(data.find(Reading::tasksCount) || data.find(Reading::loadAverage0) || data.upTime());

  machine.kernel.load = {{.tasks = 312, .threads = 1450}};
  machine.kernel.averages = {1.52, 1.31, 1.20};
  machine.kernel.averagesDelivered = 3;
  machine.kernel.boot = {{.seconds = 1'699'906'220, .microseconds = 500'000}};
  model.updateModel();
  const auto expectThem = [&](float average0) {
    EXPECT_EQ(data.find(Reading::tasksCount), 312.0F);
    EXPECT_EQ(data.find(Reading::threadsCount), 1450.0F);
    EXPECT_EQ(data.find(Reading::loadAverage0), average0);
    EXPECT_EQ(data.find(Reading::loadAverage1), 1.31F);
    EXPECT_EQ(data.find(Reading::loadAverage2), 1.20F);
    EXPECT_EQ(data.upTime(), (CalendarDifference{0, 1, 2, 2}));
  };
  expectThem(1.52F);

  machine.kernel.load.reset();
  machine.kernel.averages = {4, 5, 6};
  machine.kernel.averagesDelivered = -1;
  machine.kernel.boot.reset();
  machine.clock.seconds += 86400;
  model.updateModel();
  expectThem(1.52F);
  machine.kernel.averagesDelivered = 1;  // those that were not delivered keep their values
  model.updateModel();
  expectThem(4.0F);
}

}  // namespace
}  // namespace vel::test
