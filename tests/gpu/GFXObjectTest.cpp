// Watching the graphics processor in use: the mode that is set, and the reports.
#include "gpu/GFXObject.h"

#include <gtest/gtest.h>

#include <atomic>
#include <memory>
#include <thread>
#include <tuple>

#include "gpu/Machine.h"

namespace vel::test {
namespace {

struct Delegate : GFXObjectDelegate {
  explicit Delegate(Machine& watched) : machine(watched) {}
  void GPUCardTypeIs(std::int64_t type) override {
    machine.switchingDriver.write("is " + std::to_string(type));
  }
  Machine& machine;
};

TEST(Monitor, SetsTheModeThatTheProcessWasStartedWith) {
  const Log discrete{"1: 2 1 4 0", "1: 2 1 0 1", "1: 2 1 5 2", "sleep 10",
                     "1: 3 1 7",   "1: 2 1 2 0", "1: 3 1 7",   "is 0"};
  Log integrated = discrete;
  std::erase(integrated, "1: 2 1 2 0");
  const Log dynamic{"1: 2 1 1 1", "1: 2 1 5 0", "1: 2 1 4 1", "1: 3 1 7", "is 0"};
  const Log untouched{"1: 3 1 7", "is 0"};
  // The arguments, whether a legacy machine, what is asked and told.
  const std::tuple<Log, bool, Log> cases[] = {
      {{"velbar", "--integrated", "--dynamic", "--discrete"}, true, discrete},
      {{"velbar", "--dynamic", "--integrated"}, false, integrated},
      {{"velbar", "--dynamic"}, true, dynamic},
      {{"velbar", "--discrete=", "discrete"}, false, dynamic},
      {{"velbar"}, true, untouched},
  };
  for (const auto& [arguments, isLegacy, expected] : cases) {
    SCOPED_TRACE(arguments.back());
    Machine machine;
    machine.platform.arguments = arguments;
    if (isLegacy) {
      machine.displays.addDisplay("NVIDIA GeForce 9400M");
      machine.displays.addDisplay("NVIDIA GeForce 9600M GT");
    }
    machine.switchingDriver.services = {{5}};
    machine.useIntegrated(true);
    const auto monitor = std::make_shared<GFXObject>();
    EXPECT_TRUE(monitor->isDualGPUCard());
    machine.switchingDriver.taken();
    Delegate delegate(machine);
    monitor->setDelegate(&delegate);
    for (int i = 0; i < 2; ++i) {  // each time it starts
      monitor->activateGPUMonitoring();
      monitor->activateGPUMonitoring();
      EXPECT_EQ(machine.switchingDriver.taken(), expected);
      EXPECT_EQ(machine.displays.callbacks(), 1U);
      monitor->deActivateGPUMonitoring();
      monitor->deActivateGPUMonitoring();
      EXPECT_EQ(machine.displays.callbacks(), 0U);
    }
    EXPECT_EQ(machine.switchingDriver.taken(), Log{});  // the mode stays
  }
}

TEST(Monitor, ReportsWhileItIsOnAndHasADelegate) {
  Machine machine;
  EXPECT_FALSE(std::make_shared<GFXObject>()->isDualGPUCard());
  const auto monitor = std::make_shared<GFXObject>();
  Delegate delegate(machine);
  monitor->setDelegate(&delegate);
  EXPECT_EQ(monitor->delegate(), &delegate);
  machine.switchingDriver.taken();
  monitor->GPUDidChangeTo(0);
  monitor->forceCurrentStateUpdateToDelegate();
  EXPECT_EQ(machine.switchingDriver.taken(), Log{});
  monitor->activateGPUMonitoring();  // what cannot be read counts as the discrete one
  monitor->GPUDidChangeTo(7);
  machine.displays.reconfigure();
  machine.queue.drain();
  EXPECT_EQ(machine.switchingDriver.taken(), (Log{"is 1", "is 7", "sleep 5", "is 1"}));
  machine.displays.reconfigure();
  monitor->deActivateGPUMonitoring();
  machine.queue.drain();
  monitor->activateGPUMonitoring();
  monitor->setDelegate(nullptr);
  machine.displays.reconfigure();
  machine.queue.drain();
  EXPECT_EQ(machine.switchingDriver.taken(), (Log{"sleep 5", "is 1", "sleep 5"}));
  monitor->deActivateGPUMonitoring();
}

/// Stops the monitor that tells it.
struct Stopper : GFXObjectDelegate {
  void GPUCardTypeIs(std::int64_t /*type*/) override { monitor->deActivateGPUMonitoring(); }
  GFXObject* monitor = nullptr;
};

TEST(Monitor, CanBeStoppedByWhomItTells) {
  Machine machine;
  const auto monitor = std::make_shared<GFXObject>();
  Stopper stopper;
  stopper.monitor = monitor.get();
  monitor->setDelegate(&stopper);
  monitor->activateGPUMonitoring();
  EXPECT_EQ(machine.displays.callbacks(), 0U);
}

/// While it is told, another thread stops the monitor.
struct Interrupted : GFXObjectDelegate {
  void GPUCardTypeIs(std::int64_t /*type*/) override {
    stopping = std::thread([this] {
      monitor->deActivateGPUMonitoring();
      stopped = true;
    });
    for (int i = 0; i < 1000; ++i) {
      std::this_thread::yield();
    }
    EXPECT_FALSE(stopped);
  }
  GFXObject* monitor = nullptr;
  std::thread stopping;
  std::atomic<bool> stopped = false;
};

TEST(Monitor, StopsOnlyAfterAReportThatIsUnderWay) {
  Machine machine;
  const auto monitor = std::make_shared<GFXObject>();
  Interrupted delegate;
  delegate.monitor = monitor.get();
  monitor->setDelegate(&delegate);
  monitor->activateGPUMonitoring();
  delegate.stopping.join();
  EXPECT_TRUE(delegate.stopped);
}

}  // namespace
}  // namespace vel::test
