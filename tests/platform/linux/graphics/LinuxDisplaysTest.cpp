// Names of display controllers, and which of a machine's devices have one.
#include "platform/linux/graphics/LinuxDisplays.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "platform/linux/graphics/PciNames.h"
#include "support/MachineTree.h"

namespace vel::test {
namespace {

constexpr PciId kGt330M{.vendor = 0x10de, .device = 0x0a29};

using Names = std::vector<std::string>;

TEST(PciNames, PutTheVendorFirst) {
  const std::pair<const char*, const char*> cases[] = {
      {"Intel Corporation|CometLake-H GT2 [UHD Graphics]", "Intel UHD Graphics"},
      {"Intel Corporation|HD Graphics 530", "Intel HD Graphics 530"},
      {"Intel Corporation|82915G [Grantsdale] Device", "Intel 82915G [Grantsdale] Device"},
      {"NVIDIA Corporation|GT216M [GeForce GT 330M]", "NVIDIA GeForce GT 330M"},
      {"Advanced Micro Devices, Inc. [AMD/ATI]|RV535 [Radeon X1650] (Secondary)",
       "AMD Radeon X1650"},
      {"Advanced Micro Devices, Inc. [AMD]|VanGogh [AMD Custom GPU 0405]", "AMD Custom GPU 0405"},
      {"ASPEED Technology, Inc.|AST []", "ASPEED Technology AST []"},
      {"Moore Threads Technology Co.,Ltd|", "Moore Threads Technology 10de:0a29"},
      {"Matrox Electronics Systems Ltd.|a] [", "Matrox Electronics Systems a] ["}};
  const MachineTree tree;
  for (const auto& [entry, name] : cases) {
    const std::string vendor(entry, std::string(entry).find('|'));
    const std::string device = entry + vendor.size() + 1;
    tree.write("ids", "10de  " + vendor + (device.empty() ? "\n" : "\n\t0a29  " + device + "\n"));
    EXPECT_EQ(pciNames(tree.absolute("ids"), std::vector{kGt330M}), Names{name});
  }
}

TEST(PciNames, AreNumbersWithoutASoundDatabase) {
  const Names numbers{"1ff2:0001"};
  const std::vector ids{PciId{.vendor = 0x1ff2, .device = 1}};
  EXPECT_EQ(pciNames("/nonexistent", ids), numbers);
  const MachineTree tree;
  tree.write("ids", "10de  N\nzz\n1ff2  N\n");
  // In a process of its own because the library leaves the file open.
  EXPECT_EXIT(_exit(pciNames(tree.absolute("ids"), ids) == numbers ? 0 : 1),
              testing::ExitedWithCode(0), "");
}

TEST(PciNames, AreThoseOfTheMachinesDatabase) {
  const std::vector ids{kGt330M, PciId{.vendor = 0x10de, .device = 0x0863},
                        PciId{.vendor = 0x10de, .device = 0x0647}};
  EXPECT_EQ(pciNames({}, ids),
            (Names{"NVIDIA GeForce GT 330M", "NVIDIA GeForce 9400M", "NVIDIA GeForce 9600M GT"}));
}

TEST(LinuxDisplays, TellDisplayControllersFromOtherDevices) {
  const MachineTree tree("intel-nvidia");
  LinuxDisplays displays(tree.sys(), "/nonexistent");
  const auto devices = displays.matchingServices("IOPCIDevice").value();
  ASSERT_EQ(devices.size(), 3U);
  const std::string model = "10de:1f95";
  EXPECT_EQ(
      displays.properties(devices[1]),
      (Displays::Properties{{"IOName", "display"},
                            {"model", std::vector<std::uint8_t>(model.begin(), model.end())}}));
  EXPECT_EQ(displays.properties(devices[2]), Displays::Properties());
  EXPECT_EQ(displays.properties(3), std::nullopt);

  // One that goes keeps its number for itself, and the others theirs.
  std::filesystem::remove_all(tree.sys() / "bus/pci/devices/0000:00:02.0");
  EXPECT_EQ(displays.properties(devices[0]), std::nullopt);
  EXPECT_EQ(displays.matchingServices("IOPCIDevice"),
            std::vector(devices.begin() + 1, devices.end()));

  EXPECT_EQ(displays.matchingServices("IODisplay"), std::vector<Displays::Device>());
  EXPECT_EQ(LinuxDisplays("/nonexistent").matchingServices("IOPCIDevice"), std::nullopt);
}

}  // namespace
}  // namespace vel::test
