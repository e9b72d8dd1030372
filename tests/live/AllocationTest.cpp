// A refresh keeps its storage: after the first samples nothing is allocated any more. Nor does a
// broadcast allocate.
#include <gtest/gtest.h>

#include "module/VELModuleController.h"
#include "platform/foundation/Clock.h"
#include "platform/host/Broadcasts.h"
#include "platform/linux/LinuxKernel.h"
#include "support/CountAllocations.h"
#include "support/InstalledPlatform.h"

namespace vel::test {
namespace {

TEST(Allocation, ARefreshAllocatesNothing) {
  InstalledPlatform<LinuxKernel, SystemClock> machine;
  VELModuleController controller(machine.bundle, {});
  controller.initMainApp();
  const auto allocationsOf = [&](int refreshes) {
    allocations = 0;
    for (int i = 0; i < refreshes; ++i) {
      controller.updateModel();
      controller.updateViews();
      machine.notificationCenter.post(broadcast::top5Type, i);
    }
    return allocations.load();
  };
  EXPECT_GT(allocationsOf(3), 0);  // the counter counts
  EXPECT_EQ(allocationsOf(100), 0);
}

}  // namespace
}  // namespace vel::test
