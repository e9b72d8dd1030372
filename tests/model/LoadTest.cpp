// Load averages, task and thread counts, uptime.
#include <gtest/gtest.h>

#include <utility>

#include "model/VELModuleModel.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

TEST(Load, ReadingsAreStoredAndSurviveFailures) {
  ScriptedPlatform machine;
  VELModuleModel model;
  const auto& data = model.record();
  model.updateModel();
  EXPECT_FALSE(data.find(Reading::tasksCount) || data.find(Reading::loadAverage0) || data.upTime());

  machine.kernel.load = {{.tasks = 312, .threads = 1450}};
  machine.kernel.averages = {1.52, 1.31, 1.20};
  machine.kernel.averagesDelivered = 3;
  machine.kernel.boot = {{.seconds = 1'699'906'220, .microseconds = 0}};
  model.updateModel();
  const auto expectThem = [&](float average0) {
    EXPECT_EQ(data.find(Reading::tasksCount), 312.0F);
    EXPECT_EQ(data.find(Reading::threadsCount), 1450.0F);
    EXPECT_EQ(data.find(Reading::loadAverage0), average0);
    EXPECT_EQ(data.find(Reading::loadAverage1), 1.31F);
    EXPECT_EQ(data.find(Reading::loadAverage2), 1.20F);
    EXPECT_EQ(data.upTime(), (CalendarDifference{0, 1, 2, 3}));
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

TEST(Load, MicrosecondsOfTheBootTimeCount) {
  ScriptedPlatform machine;
  VELModuleModel model;
  machine.clock.seconds = 1'700'000'060.5;
  for (const auto& [microseconds, minutes] : {std::pair{500'000, 1}, {500'001, 0}}) {
    machine.kernel.boot = {{.seconds = 1'700'000'000, .microseconds = microseconds}};
    model.updateModel();
    EXPECT_EQ(model.record().upTime()->minute, minutes);
  }
}

}  // namespace
}  // namespace vel::test
