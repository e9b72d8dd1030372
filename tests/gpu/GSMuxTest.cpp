// What is asked of the switching driver, call by call.
#include "gpu/GSMux.h"

#include <gtest/gtest.h>

#include <array>
#include <optional>
#include <tuple>

#include "gpu/Machine.h"

namespace vel::test {
namespace {

constexpr const char* k2010 = "NVIDIA GeForce GT 330M";

TEST(Switcher, OpensTheFirstServiceAndKeepsTheNewestConnection) {
  using Services = std::optional<std::vector<SwitchingDriver::Service>>;
  const std::string find = "find AppleGraphicsControl";
  // What is found, whether it opens, the selector that fails; the result and what was asked.
  const std::tuple<Services, bool, std::optional<std::uint32_t>, bool, Log> cases[] = {
      {std::nullopt, true, {}, false, {find}},
      {Services({}), true, {}, false, {find}},
      {Services({5, 6}), false, {}, false, {find, "open 5 0"}},
      {Services({5, 6}), true, 0, false, {find, "open 5 0", "1: 0"}},
      {Services({5, 6}), true, {}, true, {find, "open 5 0", "2: 0"}},
  };
  Machine machine;
  auto& driver = machine.switchingDriver;
  for (const auto& [services, opens, failing, opened, asked] : cases) {
    driver.services = services;
    driver.opens = opens;
    driver.failing = failing;
    EXPECT_EQ(GSMux::switcherOpen(), opened);
    EXPECT_EQ(driver.taken(), asked);
    EXPECT_EQ(GSMux::setMode(-1), failing.has_value() || opened);  // kept though it did not start
  }
  driver.failing = 1;
  GSMux::switcherClose();
  GSMux::switcherClose();
  EXPECT_EQ(driver.taken(), (Log{"2: 1", "close 2"}));
  EXPECT_FALSE(GSMux::setMode(2));
  EXPECT_EQ(driver.taken(), Log{});
}

TEST(Switcher, SetsAMode) {
  const Log dynamic{"1: 2 1 1 1", "1: 2 1 5 0", "1: 2 1 4 1"};
  const Log stay{"1: 2 1 4 0", "1: 2 1 0 1", "1: 2 1 5 2", "sleep 10", "1: 3 1 7"};
  const Log stay2010{"1: 2 1 4 0", "sleep 10", "1: 3 1 7"};
  const auto andSwitch = [](Log log) {
    log.emplace_back("1: 2 1 2 0");
    return log;
  };
  // The mode, whether on the machine of 2010, whether the integrated one is in use; what is asked.
  const std::tuple<std::int32_t, bool, bool, Log> cases[] = {
      {0, false, true, stay},
      {0, false, false, andSwitch(stay)},
      {1, false, true, andSwitch(stay)},
      {1, false, false, stay},
      {0, true, true, stay2010},
      {0, true, false, andSwitch(stay2010)},
      {1, true, true, andSwitch(stay2010)},
      {1, true, false, stay2010},
      {2, false, true, dynamic},
      {2, true, false, dynamic},
      {3, false, false, {}},
      {-1, true, true, {}},
  };
  for (const auto& [mode, is2010, integrated, asked] : cases) {
    SCOPED_TRACE(mode);
    for (const auto failing : {std::optional<std::uint32_t>(), std::optional(2U)}) {
      Machine machine;
      machine.displays.addDisplay(is2010 ? k2010 : "NVIDIA GeForce GT 330");
      machine.useIntegrated(integrated);
      EXPECT_FALSE(GSMux::setMode(mode));
      EXPECT_EQ(machine.switchingDriver.taken(), Log{});
      machine.open();
      machine.switchingDriver.failing = failing;
      EXPECT_TRUE(GSMux::setMode(mode));
      EXPECT_EQ(machine.switchingDriver.taken(), asked);
    }
  }
}

TEST(Switcher, TellsTheStateInTheOrderOfTheRules) {
  using Answers = std::vector<bool>;
  const std::string integrated = "1: 3 1 7";
  const std::string dynamic = "1: 3 1 4";
  const std::string policy = "1: 3 1 5";
  // Features 7, 4 and 5, and the machine of 2010: integrated, discrete, dynamic, old-style,
  // integrated only, discrete only; what is asked.
  const std::tuple<std::array<std::uint64_t, 3>, bool, Answers, Log> cases[] = {
      {{1, 0, 2},
       false,
       {true, false, false, true, true, false},
       {integrated, integrated, dynamic, policy, integrated, policy, integrated}},
      {{0, 7, 1},
       false,
       {false, true, true, false, false, false},
       {integrated, integrated, dynamic, policy, integrated, integrated, policy}},
      {{9, 1, 3},
       true,
       {true, false, true, false, true, false},
       {integrated, integrated, dynamic, policy, integrated, policy, integrated}},
  };
  const auto answers = [] {
    return Answers{GSMux::isUsingIntegratedGPU(),    GSMux::isUsingDiscreteGPU(),
                   GSMux::isUsingDynamicSwitching(), GSMux::isUsingOldStyleSwitchPolicy(),
                   GSMux::isOnIntegratedOnlyMode(),  GSMux::isOnDiscreteOnlyMode()};
  };
  for (const auto& [features, is2010, expected, asked] : cases) {
    Machine machine;
    if (is2010) {
      machine.displays.addDisplay(k2010);
    }
    for (const auto& [i, feature] : {std::pair{0U, 7U}, {1U, 4U}, {2U, 5U}}) {
      machine.switchingDriver.setFeature(feature, features.at(i));
    }
    // Without a connection nothing but the policy is asked for, in vain.
    EXPECT_EQ(answers(), (Answers{false, true, false, false, false, is2010}));
    EXPECT_EQ(machine.switchingDriver.taken(), (Log{"0: 3 1 5", "0: 3 1 5"}));
    machine.open();
    EXPECT_EQ(answers(), expected);
    EXPECT_EQ(machine.switchingDriver.taken(), asked);
  }
}

}  // namespace
}  // namespace vel::test
