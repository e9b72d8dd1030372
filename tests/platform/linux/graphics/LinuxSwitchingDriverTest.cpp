// What the driver reads of machines and what it tells the kernel.
#include "platform/linux/graphics/LinuxSwitchingDriver.h"

#include <gtest/gtest.h>
#include <sys/fsuid.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "support/MachineTree.h"

namespace vel::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* kSwitch = "sys/kernel/debug/vgaswitcheroo/switch";
constexpr const char* kDevices = "sys/bus/pci/devices";

using Scalars = std::vector<std::uint64_t>;

/// A path of the tree and its new text; an empty one removes what is there.
using Edit = std::pair<std::string, std::string>;
using Edits = std::vector<Edit>;

Edit device(const std::string& path, const std::string& text) {
  return {std::string(kDevices) + "/" + path, text};
}

constexpr const char* kLaptop = "intel-nvidia";
const Edit kPanelOff = device("0000:00:02.0/drm/card1/card1-eDP-1/enabled", "disabled");
const Edit kOutletOn = device("0000:01:00.0/drm/card0/card0-HDMI-A-1/enabled", "enabled");
const Edit kPowerOn = device("0000:01:00.0/power/control", "on");
const Edit kNoIntegrated = device("0000:00:02.0", "");
const Edit kNoDiscrete = device("0000:01:00.0", "");
const Edit kChipset = device("0000:01:00.0/device", "0x0863");
const Edit kNoSwitch = {kSwitch, ""};
const Edit kNotDynamic = {kSwitch, "0:IGD:+:Pwr:0000:00:02.0\n1:DIS: :Pwr:0000:01:00.0"};
const Edit kSwitched = {kSwitch, "0:IGD: :Off:0000:00:02.0\n1:DIS:+:Pwr:0000:01:00.0"};
const Edit kNamedOtherwise = {kSwitch, "0:DIS:+:Pwr:0000:00:02.0\n1:IGD: :DynOff:0000:01:00.0"};
const Edit kThird = {kSwitch,
                     "0:IGD:+:Pwr:0000:00:02.0\n1:DIS: :DynOff:0000:01:00.0\n"
                     "2:IGD: :Pwr:0000:3e:00.0"};
const Edit kThirdClass = device("0000:3e:00.0/class", "0x030000");
const Edit kThirdOn = device("0000:3e:00.0/drm/card2/card2-DP-1/enabled", "enabled");
const Edit kNoLine = {kSwitch,
                      "0:IGD:+:Pwr:\n1:DISC: :DynOff:0000:01:00.0\nx:DIS:+:Off:0000:01:00.0"};

void apply(const MachineTree& tree, const Edits& edits) {
  for (const auto& [path, text] : edits) {
    if (text.empty()) {
      fs::remove_all(tree.absolute(path));
    } else {
      tree.write(path, text + "\n");
    }
  }
}

class Driver {
 public:
  explicit Driver(const MachineTree& tree)
      : driver_(tree.sys(), tree.sys() / "kernel/debug",
                [this](const SwitchingProblem& met) { write(met); }),
        connection_(driver_.open(1, 0).value()) {}

  int set(std::uint64_t feature, std::uint64_t value) {
    return driver_.callScalarMethod(connection_, 2, Scalars{1, feature, value}, {});
  }
  /// "-" when it cannot be read.
  std::string get(std::uint64_t feature) {
    std::array<std::uint64_t, 1> value{99};
    const bool done = driver_.callScalarMethod(connection_, 3, Scalars{1, feature}, value) == 0;
    EXPECT_EQ(done, value[0] != 99);
    return done ? std::to_string(value[0]) : "-";
  }
  /// Services, integrated one in use, dynamic.
  std::string readings() {
    const auto services = driver_.matchingServices("AppleGraphicsControl").value().size();
    return std::to_string(services) + ' ' + get(7) + ' ' + get(4);
  }
  /// Kind and file's name of the only one, empty without any.
  std::string problem;

 private:
  void write(const SwitchingProblem& met) {
    constexpr std::array kinds{"not permitted: ", "not supported: ", "not dynamic: "};
    problem += kinds.at(static_cast<std::size_t>(met.kind)) + met.file.filename().string();
    EXPECT_EQ(!met.error, met.kind == SwitchingProblem::Kind::notDynamic);
  }

  LinuxSwitchingDriver driver_;
  SwitchingDriver::Connection connection_;
};

/// What the capture script makes of a machine.
MachineTree captured(const MachineTree& tree) {
  const std::string copy = tree.absolute("copy").string();
  const std::string command = std::string(VEL_CAPTURE " ") + tree.proc().string() + ' ' +
                              tree.sys().string() + " > " + copy + ".tree";
  EXPECT_EQ(std::system(command.c_str()), 0);
  return MachineTree(copy);
}

TEST(LinuxSwitchingDriver, ReadsMachines) {
  const struct {
    const char* machine;
    Edits edits;
    const char* readings;
  } cases[] = {{kLaptop, {}, "1 1 1"},
               {kLaptop, {kOutletOn}, "1 0 1"},
               {kLaptop, {kOutletOn, kPanelOff}, "1 0 1"},
               // Without a picture anywhere: the switch, then the firmware's choice, then nothing.
               {kLaptop, {kPanelOff, kSwitched}, "1 0 0"},
               {kLaptop, {kPanelOff, kNoSwitch}, "1 1 1"},
               {kLaptop, {kPanelOff, kNoSwitch, device("0000:00:02.0/boot_vga", "0")}, "1 - 1"},
               {kLaptop, {kNoSwitch, kPowerOn}, "1 1 0"},
               {kLaptop, {kPowerOn}, "1 1 0"},
               {kLaptop, {kNoSwitch, device("0000:01:00.0/power", "")}, "1 1 -"},
               // The kernel's word goes before the bus, but not what it says of a third one.
               {kLaptop, {kNotDynamic}, "1 1 0"},
               {kLaptop, {kNamedOtherwise}, "1 0 0"},
               {kLaptop, {kNoLine, kPanelOff, kPowerOn}, "1 1 0"},
               {kLaptop, {kThird, kThirdClass, kThirdOn}, "1 0 1"},
               // Alone: a laptop's, a desktop's card, a chipset's behind a bridge, none.
               {kLaptop, {kNoSwitch, kNoDiscrete}, "0 1 -"},
               {kLaptop, {kNoSwitch, kNoIntegrated, kOutletOn}, "0 0 1"},
               {kLaptop, {kNoSwitch, kNoIntegrated, kOutletOn, kChipset}, "0 1 -"},
               {kLaptop, {kNoSwitch, kNoIntegrated, kNoDiscrete}, "0 - -"},
               {"amd-amd", {}, "1 0 1"},
               {"amd-amd", {device("0000:03:00.0/drm", "")}, "1 1 1"},
               {"amd-amd", {device("0000:07:00.2", "")}, "0 0 1"}};
  for (const auto& [machine, edits, readings] : cases) {
    const MachineTree tree(machine);
    apply(tree, edits);
    SCOPED_TRACE(machine + std::to_string(&readings - &cases[0].readings));
    Driver driver(tree);
    EXPECT_EQ(driver.readings(), readings);
    if (edits.empty()) {
      EXPECT_EQ(Driver(captured(tree)).readings(), readings);
    }
  }
}

TEST(LinuxSwitchingDriver, SeesACardThatComesAndGoes) {
  const MachineTree tree(kLaptop);
  apply(tree, {kNoSwitch, kNoDiscrete});
  Driver driver(tree);
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(driver.readings(), "0 1 -");
    apply(tree, {kThirdClass, device("0000:3e:00.0/vendor", "0x1002"), kThirdOn});
    EXPECT_EQ(driver.readings(), "1 0 -");
    apply(tree, {device("0000:3e:00.0", "")});
  }
}

TEST(LinuxSwitchingDriver, TellsTheKernel) {
  const struct {
    Edits edits;
    std::vector<std::pair<std::uint64_t, std::uint64_t>> features;
    const char* commands;
    const char* problem;
  } cases[] = {{{}, {{4, 0}}, "OFF ", ""},
               {{kOutletOn}, {{4, 0}}, "", ""},
               {{kSwitched}, {{4, 0}}, "", ""},
               {{}, {{2, 0}, {2, 1}}, "DIS ", ""},
               {{kOutletOn}, {{2, 0}}, "IGD ", ""},
               {{}, {{5, 2}, {2, 0}}, "DDIS ", ""},
               {{kOutletOn}, {{5, 2}, {2, 0}, {5, 2}, {5, 7}, {2, 0}}, "DIGD DIGD ", ""},
               {{}, {{5, 0}, {5, 2}, {5, 0}, {5, 0}, {2, 0}}, "IGD DIS ", ""},
               {{}, {{0, 1}, {1, 1}, {4, 1}, {4, 5}, {5, 7}}, "", ""},
               {{kPowerOn, kNotDynamic}, {{4, 1}, {4, 1}}, "", "not dynamic: control"},
               {{kNotDynamic}, {{4, 1}}, "", "not dynamic: switch"},
               {{kNoSwitch}, {{4, 1}, {2, 0}, {4, 0}}, "", "not supported: switch"},
               {{kNoSwitch, kOutletOn}, {{4, 0}}, "", "not supported: switch"}};
  for (const auto& [edits, features, commands, problem] : cases) {
    SCOPED_TRACE(&problem - &cases[0].problem);
    const MachineTree tree(kLaptop);
    apply(tree, edits);
    const fs::path file = tree.absolute(kSwitch);
    const bool isThere = fs::exists(file);
    const std::string text(std::istreambuf_iterator(std::ifstream(file).rdbuf()), {});
    Driver driver(tree);
    std::string written;
    for (const auto& [feature, value] : features) {
      if (isThere) {
        tree.write(kSwitch, "....\n" + text);  // what is written comes first
      }
      EXPECT_EQ(driver.set(feature, value), 0);
      std::string line;
      std::getline(std::ifstream(file), line);
      line.resize(std::min(line.size(), line.find('.')));
      written += line + (line.empty() ? "" : " ");
    }
    EXPECT_EQ(written, commands);
    EXPECT_EQ(driver.problem, problem);
    EXPECT_EQ(fs::exists(file), isThere);
  }
}

TEST(LinuxSwitchingDriver, HoldsToWhatItMayWrite) {
  const MachineTree tree(kLaptop);
  const fs::path debug = tree.sys() / "kernel/debug";
  Driver allowed(tree);
  allowed.set(5, 2);
  EXPECT_EQ(allowed.get(5), "2");
  fs::permissions(tree.absolute(""), fs::perms(0755));
  fs::permissions(debug, fs::perms::none);
  setfsuid(65534);  // what an administrator's program may do, a user's may not
  Driver refused(tree);
  refused.set(5, 2);
  EXPECT_EQ(refused.get(5), "0");
  EXPECT_EQ(refused.readings(), "1 1 1");
  EXPECT_EQ(refused.set(4, 0), 0);
  EXPECT_EQ(refused.set(2, 0), 0);
  setfsuid(geteuid());
  fs::permissions(debug, fs::perms::owner_all);
  EXPECT_EQ(refused.problem, "not permitted: switch");
}

TEST(LinuxSwitchingDriver, TakesOnlySoundCalls) {
  const MachineTree tree(kLaptop);
  LinuxSwitchingDriver driver(tree.sys(), "/nonexistent");
  EXPECT_EQ(driver.matchingServices("IODisplay"), std::vector<SwitchingDriver::Service>());
  const auto first = driver.open(1, 0).value();
  const auto second = driver.open(1, 0).value();
  std::array<std::uint64_t, 2> output{99, 99};
  const auto call = [&](auto connection, std::uint32_t selector, const Scalars& input,
                        std::size_t outputs) {
    return driver.callScalarMethod(connection, selector, input, std::span(output).first(outputs));
  };
  driver.close(first);
  for (const SwitchingDriver::Connection closed : {0U, first, second + 1}) {
    EXPECT_EQ(call(closed, 0, {}, 0) + call(closed, 3, {1, 7}, 1), -2);
  }
  EXPECT_EQ(call(second, 4, {}, 0), -1);
  for (const Scalars& input : {Scalars{}, {1}, {1, 5}, {2, 5, 0}, {1, 3, 0}, {1, 5, 0, 0}}) {
    EXPECT_EQ(call(second, 2, input, 0), -1);
  }
  for (const Scalars& input : {Scalars{}, {1}, {2, 7}, {1, 0}, {1, 7, 0}}) {
    EXPECT_EQ(call(second, 3, input, 1), -1);
  }
  EXPECT_EQ(call(second, 3, {1, 7}, 0) + call(second, 3, {1, 7}, 2), -2);
  EXPECT_EQ(output[0], 99U);
  EXPECT_EQ(call(second, 0, {}, 0), 0);
  EXPECT_EQ(call(second, 1, {}, 0), 0);
}

}  // namespace
}  // namespace vel::test
