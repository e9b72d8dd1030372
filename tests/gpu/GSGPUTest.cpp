// Telling the graphics processors apart by their names, and word of a change.
#include "gpu/GSGPU.h"

#include <gtest/gtest.h>

#include <tuple>

#include "gpu/Machine.h"

namespace vel::test {
namespace {

using Names = std::vector<std::string>;

TEST(GraphicsProcessors, AreKnownByTheirNames) {
  using Name = std::optional<std::string>;
  const std::string legacyIntegrated = "NVIDIA GeForce 9400M";
  const std::string legacyDiscrete = "NVIDIA GeForce 9600M GT";
  // The names; the integrated and the discrete one; whether of the one family, of the other.
  const std::tuple<Names, Name, Name, bool, bool> cases[] = {
      {{"AMD Radeon", "Intel UHD", "Intel Arc"}, "Intel UHD", "AMD Radeon", false, false},
      {{"Intel HD", "NVIDIA GeForce GT 330M"}, "Intel HD", "NVIDIA GeForce GT 330M", false, true},
      {{"Intel HD"}, "Intel HD", {}, false, false},
      {{"intel HD", "NVIDIA GeForce GT 330M "}, {}, "intel HD", false, false},
      {{legacyDiscrete, "Intel HD", legacyIntegrated},
       legacyIntegrated,
       legacyDiscrete,
       true,
       false},
      {{legacyIntegrated}, {}, legacyIntegrated, false, false},
      {{}, {}, {}, false, false},
  };
  for (const auto& [names, integrated, discrete, isLegacy, is2010] : cases) {
    SCOPED_TRACE(names.size());
    Machine machine;
    for (const auto& name : names) {
      machine.displays.addDisplay(name);
    }
    EXPECT_EQ(GSGPU::integratedGPUName(), integrated);
    EXPECT_EQ(GSGPU::discreteGPUName(), discrete);
    EXPECT_EQ(GSGPU::isLegacyMachine(), isLegacy);
    EXPECT_EQ(GSGPU::is2010MacBookPro(), is2010);
    EXPECT_EQ(GSGPU::getGPUNames(), names);
    // The machine is looked at once.
    machine.displays.addDisplay("NVIDIA GeForce GT 330M");
    EXPECT_EQ(GSGPU::is2010MacBookPro(), is2010);
    EXPECT_EQ(GSGPU::integratedGPUName(), integrated);
    EXPECT_EQ(&GSGPU::getGPUNames(), &GSGPU::getGPUNames());
    EXPECT_EQ(machine.displays.searches, 1);
  }
}

TEST(GraphicsProcessors, AreReadFromTheDevicesThatAreDisplays) {
  const std::vector<std::uint8_t> model{'I', ' ', 0, ' '};
  using Properties = std::optional<Displays::Properties>;
  const std::pair<Properties, Names> cases[] = {
      {Displays::Properties{{"IOName", "display"}, {"model", model}}, {{"I \0 ", 4}}},
      {Displays::Properties{{"IOName", "Display"}, {"model", model}}, {{"I \0 ", 4}}},
      {Displays::Properties{{"IOName", "displays"}, {"model", model}}, {}},
      {Displays::Properties{{"IOName", model}, {"model", model}}, {}},
      {Displays::Properties{{"model", model}}, {}},
      {Displays::Properties{{"IOName", "display"}, {"model", "I"}}, {}},
      {Displays::Properties{{"IOName", "display"}}, {}},
      {std::nullopt, {}},
  };
  for (std::size_t i = 0; const auto& [properties, names] : cases) {
    SCOPED_TRACE(i++);
    Machine machine;
    machine.displays.devices = {properties};
    EXPECT_EQ(GSGPU::getGPUNames(), names);
  }
  Machine machine;
  machine.displays.searchable = false;
  EXPECT_EQ(GSGPU::getGPUNames(), Names{});
  EXPECT_FALSE(GSGPU::discreteGPUName());
}

struct Listener : GSGPUDelegate {
  explicit Listener(Log& log) : reports(log) {}
  void GPUDidChangeTo(std::int32_t gpu) override { reports.push_back(std::to_string(gpu)); }
  Log& reports;
};

TEST(Changes, ReachTheDelegateOfTheMomentOneByOne) {
  Machine machine;
  Log first;
  Log second;
  machine.open();
  GSGPU::registerForGPUChangeNotifications(std::make_shared<Listener>(first));
  for (const std::uint32_t flags : {1U, 7U, 16U}) {
    machine.displays.reconfigure(flags);
  }
  machine.queue.drain();
  EXPECT_EQ(machine.switchingDriver.taken(), Log{});
  // One switch that two displays tell of, whatever else they tell.
  machine.displays.reconfigure(8, 1);
  machine.displays.reconfigure(9, 2);
  EXPECT_EQ(machine.switchingDriver.taken(), Log{});
  machine.useIntegrated(true);
  machine.queue.drain();
  EXPECT_EQ(machine.switchingDriver.taken(), (Log{"sleep 5", "1: 3 1 7", "sleep 5", "1: 3 1 7"}));
  EXPECT_EQ(first, (Log{"0", "0"}));

  machine.displays.reconfigure();
  machine.useIntegrated(false);
  GSGPU::registerForGPUChangeNotifications(std::make_shared<Listener>(second));
  machine.displays.reconfigure();
  machine.queue.drain();
  EXPECT_EQ(second, (Log{"1", "1"}));
  machine.displays.reconfigure();
  GSGPU::unRegisterForGPUChangeNotifications();
  machine.switchingDriver.taken();
  machine.queue.drain();
  EXPECT_EQ(machine.switchingDriver.taken(), (Log{"sleep 5", "1: 3 1 7"}));  // to its end
  EXPECT_EQ(machine.displays.callbacks(), 0U);
  EXPECT_EQ(first.size() + second.size(), 4U);
}

/// A queue that only keeps its tasks.
struct PatientQueue : Queue {
  void async(Task task) override { tasks.push_back(std::move(task)); }
  std::vector<Task> tasks;
};

TEST(Changes, WaitForOneAnotherAndEndWithTheRegistration) {
  Machine machine;
  PatientQueue global;
  Platform platform = machine.platformWith(global);
  Log log;
  {
    const PlatformInstallation installation(platform);
    GSGPU::registerForGPUChangeNotifications(std::make_shared<Listener>(log));
    machine.displays.reconfigure();
    machine.displays.reconfigure();
    EXPECT_EQ(global.tasks.size(), 1U);
  }
  // Whichever platform there is by then.
  const InstalledPlatform<ScriptedKernel, ManualClock> other;
  GSGPU::unRegisterForGPUChangeNotifications();
  EXPECT_EQ(machine.displays.callbacks(), 0U);
}

}  // namespace
}  // namespace vel::test
