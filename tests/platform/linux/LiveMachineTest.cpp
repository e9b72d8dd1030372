// LinuxKernel on the machine that runs the test: what holds on any Linux.
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <filesystem>
#include <string>

#include "platform/linux/LinuxKernel.h"

namespace vel::test {
namespace {

namespace fs = std::filesystem;

TEST(LiveMachine, AgreesWithTheLibrary) {
  LinuxKernel kernel;
  const long online = ::sysconf(_SC_NPROCESSORS_ONLN);
  EXPECT_EQ(kernel.logicalProcessorCount(), online);
  EXPECT_GE(kernel.processorCount(), online);
  EXPECT_LE(kernel.physicalCoreCount(), online);
  EXPECT_GE(kernel.physicalCoreCount(), 1U);

  std::array<double, 3> expected{};
  std::array<double, 3> averages{};
  EXPECT_EQ(::getloadavg(expected.data(), 3), 3);
  EXPECT_EQ(kernel.loadAverages(averages), 3);
  // The one over 15 minutes barely moves between the two.
  EXPECT_NEAR(averages[2], expected[2], 0.5);
}

TEST(LiveMachine, CountsTheProcessesThatAreListed) {
  const SystemLoad load = LinuxKernel().systemLoad().value_or(SystemLoad{});
  int listed = 0;
  for (const fs::directory_entry& entry : fs::directory_iterator("/proc")) {
    listed += entry.path().filename().string().find_first_not_of("0123456789") == std::string::npos;
  }
  EXPECT_GE(load.tasks, 1);
  // The two are not of one moment: others come and go meanwhile.
  EXPECT_GE(load.tasks + 20, listed);
  // In a pid namespace of its own, or under hidepid, a listing shows only some of the system's.
  if (fs::read_symlink("/proc/self/ns/pid") == "pid:[4026531836]" && fs::exists("/proc/1")) {
    EXPECT_LE(load.tasks, listed + 20);
  }
}

TEST(LiveMachine, AKeptFileThatIsGoneIsAFailedReading) {
  const int number = ::dup(STDERR_FILENO);
  TextFile file("/proc/self/fdinfo/" + std::to_string(number));
  EXPECT_TRUE(file.read());
  ::close(number);
  EXPECT_FALSE(file.read());
}

}  // namespace
}  // namespace vel::test
