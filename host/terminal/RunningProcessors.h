// Which of the kernel's processors the record's indices stand for.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/kernel/Kernel.h"

namespace vel {

/// The record counts the running processors core by core; people know them by the kernel's numbers.
struct RunningProcessor {
  std::int32_t number = 0;
  std::uint32_t index = 0;  ///< in the record
};

class RunningProcessors {
 public:
  explicit RunningProcessors(Kernel& kernel) : kernel_(kernel) {}

  /// For the record as the refresh just taken has left it, by number. To be called once a refresh.
  const std::vector<RunningProcessor>& ofThisRefresh();

 private:
  void read();

  Kernel& kernel_;
  std::vector<ProcessorState> states_;
  std::vector<RunningProcessor> current_;  ///< of the record
  std::vector<RunningProcessor> latest_;   ///< of the kernel
};

}  // namespace vel
