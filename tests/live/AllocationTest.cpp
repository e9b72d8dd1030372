// A refresh keeps its storage: after the first samples nothing is allocated any more. Nor does a
// broadcast allocate.
#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <new>

#include "module/VELModuleController.h"
#include "platform/foundation/Clock.h"
#include "platform/host/Broadcasts.h"
#include "platform/linux/LinuxKernel.h"
#include "support/InstalledPlatform.h"

namespace {

std::atomic<int> allocations = 0;

}  // namespace

// Every other form of new that the module uses ends in this one.
void* operator new(std::size_t size) {
  ++allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) {
    return memory;
  }
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}

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
