// The processor counts, and the broadcast when they change.
#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <utility>

#include "model/VELModuleModel.h"
#include "platform/host/Broadcasts.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

using Count = std::optional<std::uint32_t>;

TEST(Topology, GroupsWholeProcessorsPerCore) {
  // The size of a core group shows in the first core's share: one busy processor among so many.
  struct Case {
    Count logical;
    Count physical;
    float perCore;
  };
  constexpr auto kMost = std::numeric_limits<std::uint32_t>::max();
  constexpr auto kNone = std::nullopt;
  constexpr float kMoreThanThereAre = std::numeric_limits<float>::infinity();
  const Case cases[] = {{8, 4, 2},         {4, 4, 1},
                        {12, 6, 2},        {6, 4, 1},
                        {3, 2, 1},         {2, 4, 1},
                        {8, 2, 4},         {12, 1, 12},
                        {8, 0, 1},         {0, 4, 1},
                        {kNone, 4, 1},     {8, kNone, 1},
                        {kMost, kMost, 1}, {kMost, 1, kMoreThanThereAre}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.logical.value_or(-1) << " on " << c.physical.value_or(-1));
    ScriptedPlatform machine;
    machine.kernel.count = 12;
    machine.kernel.logical = c.logical;
    machine.kernel.physical = c.physical;
    machine.kernel.processors.assign(12, {.idle = 100});
    machine.kernel.processors[0] = {.user = 100};
    VELModuleModel model;
    model.updateModel();
    EXPECT_FLOAT_EQ(model.record().number(ProcessorReading::userCPUPhy, 0), 1.0F / c.perCore);
  }
}

TEST(Topology, InformationIsReadAnewAndSurvivesFailedReadings) {
  ScriptedPlatform machine;
  VELModuleModel model;
  const std::pair<std::pair<Count, Count>, CpuCoresInformation> steps[] = {
      {{8, 0}, {8, 0}}, {{6, 3}, {6, 3}}, {{std::nullopt, std::nullopt}, {6, 3}}};
  for (const auto& [counts, information] : steps) {
    machine.kernel.logical = counts.first;
    machine.kernel.physical = counts.second;
    EXPECT_EQ(model.cpuCoresInformation(), information);
  }
}

TEST(Topology, WithoutAProcessorCountOneProcessorIsSampled) {
  ScriptedPlatform machine;
  machine.kernel.count = 4;
  machine.kernel.processors.assign(4, {.user = 1, .idle = 3});
  VELModuleModel model;
  machine.kernel.count.reset();
  model.cpuCoresInformation();
  model.updateModel();
  EXPECT_FLOAT_EQ(model.record().number(ProcessorReading::userCPUAll, 0), 0.25F);
  EXPECT_FALSE(model.record().find(ProcessorReading::userCPUAll, 1));
}

TEST(Topology, AChangeOfTheLogicalCountIsBroadcastOnce) {
  ScriptedPlatform machine;
  machine.kernel.logical = 8;
  VELModuleModel model;
  int posts = 0;
  machine.notificationCenter.addObserver(&posts, broadcast::needUpdateCoreInfo,
                                         [&](const Notification& notification) {
                                           EXPECT_FALSE(notification.object);
                                           ++posts;
                                         });
  // The counters need not be readable for a change to be noticed.
  struct Step {
    Count logical;
    bool ticksReadable;
    int posts;
  };
  const Step steps[] = {{8, true, 0}, {6, true, 1}, {6, true, 1}, {std::nullopt, true, 1},
                        {6, true, 1}, {8, true, 2}, {4, false, 3}};
  for (const auto& step : steps) {
    machine.kernel.logical = step.logical;
    machine.kernel.ticksReadable = step.ticksReadable;
    model.updateModel();
    EXPECT_EQ(posts, step.posts);
  }
  machine.notificationCenter.removeObserver(&posts);
}

}  // namespace
}  // namespace vel::test
