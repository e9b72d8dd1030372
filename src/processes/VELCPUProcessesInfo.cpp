#include "processes/VELCPUProcessesInfo.h"

namespace vel {

VELCPUProcessesInfo::~VELCPUProcessesInfo() = default;

void VELCPUProcessesInfo::getAllProcessInfos() {}

std::optional<std::vector<ProcessEntry>> VELCPUProcessesInfo::getTop5CPUProccesses() {
  return std::nullopt;
}

std::optional<std::vector<ProcessEntry>>
VELCPUProcessesInfo::getTop5CPUProccessesAvgSinceProcessStart() {
  return std::nullopt;
}

std::optional<std::vector<std::string>> VELCPUProcessesInfo::getCPUProccessesForNotification() {
  return std::nullopt;
}

}  // namespace vel
