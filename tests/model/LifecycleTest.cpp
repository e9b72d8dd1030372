// The model's load, uptime and alert list.
#include <gtest/gtest.h>

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "model/VELModuleModel.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

using Pids = std::optional<std::vector<std::string>>;

struct ScriptedProcesses : VELCPUProcessesInfo {
  Pids getCPUProccessesForNotification() override { return alert; }

  Pids alert;
};

class Lifecycle : public testing::Test {
 protected:
  ScriptedPlatform machine;
  std::unique_ptr<ScriptedProcesses> owned = std::make_unique<ScriptedProcesses>();
  ScriptedProcesses& processes = *owned;
  VELModuleModel model{std::move(owned)};
};

TEST_F(Lifecycle, TheAlertListStaysUntilThereIsAnother) {
  for (const auto& [found, kept] : {std::pair{Pids{{"42"}}, Pids{{"42"}}},
                                    {std::nullopt, Pids{{"42"}}},
                                    {Pids(std::in_place), Pids(std::in_place)}}) {
    processes.alert = found;
    model.updateProcessOnlyNotif();
    EXPECT_EQ(model.record().processesForNotification(), kept);
  }
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
