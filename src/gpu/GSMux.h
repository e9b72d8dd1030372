// The way to the driver that switches between the integrated and the discrete graphics processor.
#pragma once

#include <cstdint>

namespace vel {

/// One connection for the whole process, kept until `switcherClose`; a failed call of the driver is
/// not reported. May be used on any thread.
class GSMux {
 public:
  GSMux() = delete;

  /// True when the connection was opened and the driver's side of it has started. A connection
  /// whose start has failed is kept all the same.
  static bool switcherOpen();
  static void switcherClose();

  /// 0 integrated only, 1 discrete only, 2 dynamic: the system picks; anything else changes
  /// nothing. 0 and 1 take a second. False only without a connection.
  static bool setMode(std::int32_t mode);

  /// False without a connection, and when it cannot be read.
  static bool isUsingIntegratedGPU();
  /// The opposite: true without a connection.
  static bool isUsingDiscreteGPU();
  static bool isUsingDynamicSwitching();
  static bool isUsingOldStyleSwitchPolicy();
  /// Whether the machine is held on the one processor.
  static bool isOnIntegratedOnlyMode();
  static bool isOnDiscreteOnlyMode();
};

}  // namespace vel
