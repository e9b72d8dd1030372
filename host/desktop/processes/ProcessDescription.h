// What is told of a row of the list beside its name.
#pragma once

#include <QString>
#include <cstdint>

#include "host/desktop/Texts.h"
#include "platform/host/CPUData.h"
#include "platform/linux/LinuxKernel.h"
#include "platform/linux/ProcessDetails.h"

namespace vel {

class ProcessDescription {
 public:
  /// Everything outlives this.
  ProcessDescription(LinuxKernel& kernel, const CPUData& record, const Texts& texts)
      : kernel_(kernel), record_(record), texts_(texts), details_(kernel.processDirectory()) {}

  /// A line for each: number, number of processes in the row, user, since when it has been running,
  /// command line. What is not known is left out. Plain text.
  [[nodiscard]] QString of(std::int64_t pid);

 private:
  [[nodiscard]] std::int32_t processesInRow(std::int64_t pid) const;

  LinuxKernel& kernel_;
  const CPUData& record_;
  const Texts& texts_;
  ProcessDetails details_;
};

}  // namespace vel
