// The settings that the model follows, its load, uptime and process lists, and the guard that its
// updates share.
#include <gtest/gtest.h>

#include <array>
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

struct ScriptedProcesses : VELCPUProcessesInfo {
  void getAllProcessInfos() override {
    ++readings;
    inside();
  }
  Rows getTop5CPUProccesses() override { return current; }
  Rows getTop5CPUProccessesAvgSinceProcessStart() override { return average; }
  Pids getCPUProccessesForNotification() override {
    inside();
    return alert;
  }

  Rows current{{{"current", "1", "0.0%"}}};
  Rows average{{{"average", "1", "0.0"}}};
  Pids alert;
  std::function<void()> inside = [] {};  ///< runs inside the longer calls
  int readings = 0;
};

class Lifecycle : public testing::Test {
 protected:
  [[nodiscard]] std::string topList() const {
    const auto& list = model.record().topMemProcess();
    return !list ? "none" : list->empty() ? "empty" : list->front().name;
  }

  ScriptedPlatform machine;
  std::unique_ptr<ScriptedProcesses> owned = std::make_unique<ScriptedProcesses>();
  ScriptedProcesses& processes = *owned;
  VELModuleModel model{std::move(owned)};
};

TEST_F(Lifecycle, TheModeChoosesTheList) {
  using Mode = std::optional<std::int64_t>;
  const std::pair<Mode, const char*> steps[] = {
      {2, "none"}, {0, "average"}, {1, "current"}, {2, "current"}, {std::nullopt, "average"}};
  for (const auto& [mode, list] : steps) {
    machine.notificationCenter.post(broadcast::top5Type, mode);
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

TEST_F(Lifecycle, TheAlertListStaysUntilThereIsAnother) {
  for (const auto& [found, kept] : {std::pair{Pids{{"42"}}, Pids{{"42"}}},
                                    {std::nullopt, Pids{{"42"}}},
                                    {Pids(std::in_place), Pids(std::in_place)}}) {
    processes.alert = found;
    model.updateProcessOnlyNotif();
    EXPECT_EQ(model.record().processesForNotification(), kept);
  }
}

TEST_F(Lifecycle, NoUpdateRunsInsideAnother) {
  const auto updateAll = [this] {
    model.updateModel();
    model.updateTopProcess();
    model.updateProcessOnlyNotif();
    model.updateTopProcessExtraNotif();
  };
  int calls = 0;
  processes.inside = [&] {
    if (++calls < 100) {
      updateAll();
    }
  };
  machine.notificationCenter.addObserver(this, broadcast::needUpdateCoreInfo,
                                         [this](const Notification&) { processes.inside(); });
  for (const int round : {1, 2}) {        // nor does an update keep the next one out
    machine.kernel.logical = 10 + round;  // updateModel posts
    updateAll();
    EXPECT_EQ(calls, 5 * round);
    EXPECT_EQ(machine.kernel.tickReadings, round);
  }
  machine.notificationCenter.removeObserver(this);
}

TEST_F(Lifecycle, LoadAndUptimeAreStoredAndSurviveFailures) {
  model.updateModel();
  EXPECT_FALSE(model.record().upTime());

  machine.kernel.load = {{.tasks = 312, .threads = 1450}};
  machine.kernel.averages = {1.52, 1.31, 1.20};
  machine.kernel.averagesDelivered = 3;
  machine.kernel.boot = {{.seconds = 1'699'906'220, .microseconds = 500'000}};
  model.updateModel();
  const auto expectThem = [&](float average0) {
    const auto value = [this](Reading reading) { return model.record().number(reading); };
    EXPECT_EQ((std::array{value(Reading::tasksCount), value(Reading::threadsCount),
                          value(Reading::loadAverage0), value(Reading::loadAverage1),
                          value(Reading::loadAverage2)}),
              (std::array{312.0F, 1450.0F, average0, 1.31F, 1.20F}));
    EXPECT_EQ(model.record().upTime(), (CalendarDifference{0, 1, 2, 2}));
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
