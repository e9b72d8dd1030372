// One way of showing the readings.
#pragma once

#include "platform/host/CPUData.h"

namespace vel {

class Display {
 public:
  Display() = default;
  virtual ~Display() = default;
  Display(const Display&) = delete;
  Display& operator=(const Display&) = delete;

  /// Called once a refresh that is to be shown. What goes wrong with the output is thrown as
  /// `Output` throws it.
  virtual void show(const CPUData& record) = 0;
};

}  // namespace vel
