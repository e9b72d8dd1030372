#include "views/cores/DisplayedCores.h"

namespace vel {

bool DisplayedCores::setInformation(const CpuCoresInformation& information) {
  numberOfPhysicalCores_ = information.physicalcpu;
  return numberOfLogicalCores_.exchange(information.logicalcpu) != information.logicalcpu;
}

std::optional<std::int64_t> DisplayedCores::countFor(std::int32_t type) const {
  switch (type) {
    case 0:
      return 1;
    case 1:
      return numberOfPhysicalCores_;
    case 2:
      return numberOfLogicalCores_;
    default:
      return std::nullopt;
  }
}

float DisplayedCores::load(const CPUData& record, std::int32_t type, std::uint32_t index) {
  switch (type) {
    case 1:
      return record.number(ProcessorReading::userCPUPhy, index) +
             record.number(ProcessorReading::systemCPUPhy, index);
    case 2:
      return record.number(ProcessorReading::userCPUAll, index) +
             record.number(ProcessorReading::systemCPUAll, index);
    default:
      return record.number(Reading::userCPU) + record.number(Reading::systemCPU);
  }
}

}  // namespace vel
