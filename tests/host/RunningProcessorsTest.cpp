// The kernel's numbers of the processors that the record counts from 0.
#include "host/terminal/RunningProcessors.h"

#include <gtest/gtest.h>

#include <string>

#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

/// "number=index …"
std::string text(RunningProcessors& running) {
  std::string result;
  for (const auto& [number, index] : running.ofThisRefresh()) {
    result += std::to_string(number) + "=" + std::to_string(index) + " ";
  }
  return result;
}

TEST(RunningProcessors, FollowTheRecordAsProcessorsComeAndGo) {
  ScriptedKernel kernel;
  kernel.identities = {0, 4, 1, 5};
  kernel.processors.resize(4);
  kernel.logical = 4;
  RunningProcessors running(kernel);
  const std::string all = "0=0 1=2 4=1 5=3 ";
  EXPECT_EQ(text(running), all);
  kernel.processors[1].running = false;
  kernel.logical = 3;
  EXPECT_EQ(text(running), all);  // the sample of the change is left out of the record
  EXPECT_EQ(text(running), "0=0 1=1 5=2 ");
  kernel.ticksReadable = false;
  kernel.logical = 2;
  text(running);
  EXPECT_EQ(text(running), "0=0 1=1 ");
}

}  // namespace
}  // namespace vel::test
