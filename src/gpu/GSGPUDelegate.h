// Who is told that another graphics processor has come into use.
#pragma once

#include <cstdint>

namespace vel {

class GSGPUDelegate {
 public:
  GSGPUDelegate() = default;
  virtual ~GSGPUDelegate() = default;
  GSGPUDelegate(const GSGPUDelegate&) = delete;
  GSGPUDelegate& operator=(const GSGPUDelegate&) = delete;

  /// 0 the integrated one, 1 the discrete one, which need not be another than before. Never on the
  /// main thread, and within one registration never twice at a time.
  virtual void GPUDidChangeTo(std::int32_t gpu) = 0;
};

}  // namespace vel
