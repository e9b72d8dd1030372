// Tick counters in, shares out, of a machine whose processors come and go.
#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <limits>
#include <optional>
#include <tuple>
#include <vector>

#include "model/VELModuleModel.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

using Processor = ScriptedKernel::Processor;
using Count = std::optional<std::uint32_t>;
using R = ProcessorReading;
using Shares = std::vector<float>;

constexpr std::int64_t k32Bits = std::int64_t{1} << 32;
constexpr float kAbsent = -1.F;

class Sampler : public testing::Test {
 protected:
  void machineOf(std::uint32_t logical, std::uint32_t physical) {
    kernel.count = kernel.logical = logical;
    kernel.physical = physical;
    kernel.processors.assign(logical, {});
  }

  /// Lets the processors gain so many ticks.
  void run(const std::vector<Processor>& gains) {
    for (std::size_t i = 0; i < gains.size(); ++i) {
      auto& processor = kernel.processors.at(i);
      processor.user += gains[i].user;
      processor.system += gains[i].system;
      processor.idle += gains[i].idle;
      processor.nice += gains[i].nice;
    }
  }

  static Shares shares(const VELModuleModel& model, R reading, std::uint32_t count) {
    Shares values;
    for (std::uint32_t i = 0; i < count; ++i) {
      values.push_back(model.record().find(reading, i).value_or(kAbsent));
    }
    return values;
  }

  /// User, system, idle and nice share; `user` names the kind.
  static Shares processorShares(const VELModuleModel& model, R user, std::uint32_t index) {
    Shares values;
    for (int state = 0; state < 4; ++state) {
      values.push_back(
          model.record().number(static_cast<R>(static_cast<int>(user) + state), index));
    }
    return values;
  }

  static Shares total(const VELModuleModel& model) {
    const auto& data = model.record();
    return {data.number(Reading::userCPU), data.number(Reading::systemCPU),
            data.number(Reading::idleCPU), data.number(Reading::niceCPU)};
  }

  ScriptedPlatform machine;
  ScriptedKernel& kernel = machine.kernel;
};

TEST_F(Sampler, SharesOfEachStatePerProcessorCoreAndMachine) {
  machineOf(8, 4);
  VELModuleModel model;
  model.updateModel();
  run({{.user = 10, .system = 20, .idle = 60, .nice = 10},
       {.idle = 300},  // three times the ticks: a core pools ticks, it is no mean of shares
       {.user = 100},
       {.user = 100},
       {},  // a processor without ticks has no share at all, idle included
       {.idle = 100},
       {.idle = 100},
       {.system = 100}});
  model.updateModel();
  EXPECT_EQ(processorShares(model, R::userCPUAll, 0), (Shares{0.1F, 0.2F, 0.6F, 0.1F}));
  EXPECT_EQ(processorShares(model, R::userCPUAll, 4), (Shares{0, 0, 0, 0}));
  EXPECT_EQ(shares(model, R::userCPUAll, 9), (Shares{0.1F, 0, 1, 1, 0, 0, 0, 0, kAbsent}));
  EXPECT_EQ(processorShares(model, R::userCPUPhy, 0), (Shares{0.025F, 0.05F, 0.9F, 0.025F}));
  EXPECT_EQ(shares(model, R::idleCPUPhy, 9), (Shares{0.9F, 0, 1, 0.5F, 0, 0, 0, 0, kAbsent}));
  EXPECT_EQ(total(model), (Shares{210.F / 900, 120.F / 900, 560.F / 900, 10.F / 900}));
}

TEST_F(Sampler, OfflineProcessorsTakeNoIndexAndShiftTheGrouping) {
  machineOf(8, 8);
  VELModuleModel model;
  model.updateModel();
  kernel.processors[3].running = false;
  const std::vector<Processor> gains = {{.user = 1},   {.user = 1}, {.user = 1}, {.nice = 77},
                                        {.system = 1}, {.idle = 1}, {.idle = 1}, {.nice = 1}};
  run(gains);
  model.updateModel();
  EXPECT_EQ(shares(model, R::systemCPUAll, 8), (Shares{0, 0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(shares(model, R::niceCPUAll, 8), (Shares{0, 0, 0, 0, 0, 0, 1, 0}));
  EXPECT_EQ(total(model), (Shares{3.F / 7, 1.F / 7, 2.F / 7, 1.F / 7}));

  kernel.physical = 4;  // in groups of two, the seventh of the running ones is half a core
  model.cpuCoresInformation();
  run(gains);
  model.updateModel();
  EXPECT_EQ(shares(model, R::userCPUPhy, 5), (Shares{1, 0.5F, 0, 0, 0}));
  EXPECT_EQ(shares(model, R::idleCPUPhy, 5), (Shares{0, 0, 1, 0, 0}));
  EXPECT_EQ(shares(model, R::niceCPUPhy, 5), (Shares{0, 0, 0, 0, 0}));
}

TEST_F(Sampler, ACoreHasTheProcessorsThatTheKernelSays) {
  machineOf(7, 4);
  VELModuleModel model;
  model.updateModel();
  // Two of two threads, one of them pairing with a neighbour that is offline; three of one.
  const std::int32_t cores[] = {0, 0, 1, 7, 2, 5, 6};
  for (std::size_t i = 0; i < std::size(cores); ++i) {
    kernel.processors[i].core = cores[i];
  }
  kernel.processors[3].running = false;
  run({{.user = 1, .idle = 1},
       {.idle = 2},
       {.user = 1},
       {.nice = 7},
       {.nice = 3},
       {},
       {.user = 2}});
  model.updateModel();
  EXPECT_EQ(shares(model, R::userCPUPhy, 7), (Shares{0.25F, 1, 0, 0, 1, 0, 0}));
  EXPECT_EQ(shares(model, R::niceCPUPhy, 7), (Shares{0, 0, 1, 0, 0, 0, 0}));
  EXPECT_EQ(shares(model, R::userCPUAll, 7), (Shares{0.5F, 0, 1, 0, 0, 1, 0}));
  // However many would make a core.
  kernel.physical = 2;
  model.cpuCoresInformation();
  for (std::size_t i = 0; i < 4; ++i) {
    kernel.processors[i].core = 0;
  }
  kernel.processors[3].running = true;
  run({{.user = 1}, {.user = 1}, {.user = 1}, {.idle = 1}, {.nice = 3}, {}, {.system = 2}});
  model.updateModel();
  EXPECT_EQ(shares(model, R::userCPUPhy, 7), (Shares{0.75F, 0, 0, 0, 0, 0, 0}));
  EXPECT_EQ(shares(model, R::systemCPUPhy, 7), (Shares{0, 0, 0, 1, 0, 0, 0}));
}

TEST_F(Sampler, AFailedOrSkippedReadingIsCoveredByTheNext) {
  machineOf(1, 1);
  VELModuleModel model;
  model.updateModel();
  // What is gained, whether ticks and states can be read, the logical count; the user's share of
  // the machine and of the processor.
  const std::tuple<Processor, bool, bool, Count, float, float> steps[] = {
      {{.user = 30, .idle = 70}, true, true, 1, 0.3F, 0.3F},
      {{.user = 100}, false, true, 1, 0.3F, 0.3F},
      {{}, true, true, 2, 0.3F, 0.3F},               // another count: left out as well
      {{.idle = 300}, true, true, 2, 0.25F, 0.25F},  // 100 of 400 since the first step
      {{.idle = 10}, true, false, 2, 0.25F, 0},  // no processor is counted, but the sample is kept
      {{.user = 5, .idle = 5}, true, true, 2, 0.5F, 0.5F},
  };
  for (std::size_t i = 0; const auto& [gain, ticks, states, logical, whole, processor] : steps) {
    SCOPED_TRACE(i++);
    run({gain});
    kernel.ticksReadable = ticks;
    kernel.statesReadable = states;
    kernel.logical = logical;
    model.updateModel();
    EXPECT_FLOAT_EQ(total(model)[0], whole);
    EXPECT_FLOAT_EQ(shares(model, R::userCPUAll, 1)[0], processor);
    EXPECT_FLOAT_EQ(shares(model, R::userCPUPhy, 1)[0], processor);
  }
}

TEST_F(Sampler, CountersThatStepBackGiveNoHugeDifference) {
  // The idle counter before and after, and the share of idle time beside 100 ticks of user time.
  const std::tuple<const char*, std::int64_t, std::int64_t, float> cases[] = {
      {"a tick back", 5000, 4999, 0},
      {"to nothing, as after going offline", 1'000'000, 0, 0},
      {"back from most of 32 bits", k32Bits - 50, 50, 0},
      {"over 32 bits", k32Bits - 50, k32Bits + 50, 0.5F},
      {"back below 0, and going on", -100, 0, 0.5F},
  };
  machineOf(1, 1);
  for (const auto& [what, before, after, share] : cases) {
    SCOPED_TRACE(what);
    kernel.processors = {{.idle = before}};
    VELModuleModel model;
    model.updateModel();
    kernel.processors = {{.user = 100, .idle = after}};
    model.updateModel();
    EXPECT_EQ(total(model), (Shares{1 - share, 0, share, 0}));
  }
}

TEST_F(Sampler, CountersAreComparedWithTheirOwnProcessorsWhenTheOrderChanges) {
  machineOf(3, 3);
  kernel.identities = {0, 2, TickSample::kNoProcessor};
  kernel.processors = {{.user = 1000}, {.system = 2000}, {.running = false}};
  VELModuleModel model;
  model.updateModel();
  // Processor 1 takes its place between the others; there is nothing to compare it with yet.
  kernel.identities = {0, 1, 2};
  kernel.processors = {{.user = 1010}, {.nice = 777}, {.system = 2010}};
  model.updateModel();
  EXPECT_EQ(shares(model, R::userCPUAll, 3), (Shares{1, 0, 0}));
  EXPECT_EQ(shares(model, R::niceCPUAll, 3), (Shares{0, 0, 0}));
  EXPECT_EQ(shares(model, R::systemCPUAll, 3), (Shares{0, 0, 1}));
}

TEST_F(Sampler, GroupsWholeProcessorsPerCoreInTheTimeSinceBoot) {
  // The size of a core group shows in the first core's share: one busy processor among so many.
  constexpr auto kMost = std::numeric_limits<std::uint32_t>::max();
  constexpr float kMoreThanThereAre = std::numeric_limits<float>::infinity();
  const std::tuple<Count, Count, float> cases[] = {
      {8, 4, 2}, {6, 4, 1}, {2, 4, 1}, {8, 0, 1}, {8, {}, 1}, {kMost, 1, kMoreThanThereAre}};
  for (const auto& [logical, physical, perCore] : cases) {
    SCOPED_TRACE(testing::Message() << logical.value_or(-1) << " on " << physical.value_or(-1));
    kernel.count = 12;
    kernel.logical = logical;
    kernel.physical = physical;
    kernel.processors.assign(12, {.idle = 3 * k32Bits});
    kernel.processors[0] = {.user = 3 * k32Bits};
    VELModuleModel model;
    model.updateModel();
    EXPECT_FLOAT_EQ(model.record().number(R::userCPUPhy, 0), 1.0F / perCore);
  }
}

}  // namespace
}  // namespace vel::test
