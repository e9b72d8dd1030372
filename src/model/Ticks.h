// Tick counts of one processor, or summed over several, and how two counter readings make them.
#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/kernel/Kernel.h"

namespace vel {

struct Ticks {
  float user = 0.0F;
  float system = 0.0F;
  float idle = 0.0F;
  float nice = 0.0F;

  [[nodiscard]] float total() const { return ((user + system) + idle) + nice; }

  Ticks& operator+=(const Ticks& other) {
    user += other.user;
    system += other.system;
    idle += other.idle;
    nice += other.nice;
    return *this;
  }

  Ticks& operator/=(float divisor) {
    user /= divisor;
    system /= divisor;
    idle /= divisor;
    nice /= divisor;
    return *this;
  }
};

/// The counters of the processor at position `index` of `sample`, from when they began to count.
Ticks ticksSinceBoot(const TickSample& sample, std::size_t index);

/// What the counters of the processor at position `index` of `sample` have gained since `previous`,
/// which may hold it at another position. All 0 when one of the samples does not cover the
/// processor. No count is negative: a counter that steps back has gained nothing.
Ticks ticksBetween(const TickSample& previous, const TickSample& sample, std::size_t index);

}  // namespace vel
