// A machine with graphics processors whose driver and clock write to one log.
#pragma once

#include <string>
#include <vector>

#include "gpu/GSGPU.h"
#include "gpu/GSMux.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {

using Log = std::vector<std::string>;

/// A clock that says how long it was to wait, in tenths of a second.
struct LoggingClock : ManualClock {
  void sleep(double duration) override {
    driver->write("sleep " + std::to_string(static_cast<int>(duration * 10.0)));
  }
  ScriptedSwitchingDriver* driver = nullptr;
};

/// As at the start of a process.
struct Machine : InstalledPlatform<ScriptedKernel, LoggingClock> {
  Machine() {
    clock.driver = &switchingDriver;
    GSGPU::forget();
  }
  ~Machine() { GSMux::switcherClose(); }
  Machine(const Machine&) = delete;
  Machine& operator=(const Machine&) = delete;

  /// Opens the driver of a machine that has two.
  void open() {
    switchingDriver.services = {{5, 6}};
    GSMux::switcherOpen();
    switchingDriver.taken();
  }

  void useIntegrated(bool integrated) { switchingDriver.setFeature(7, integrated ? 1 : 0); }
};

}  // namespace vel::test
