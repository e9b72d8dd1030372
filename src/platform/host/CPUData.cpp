#include "platform/host/CPUData.h"

namespace vel {
namespace {

constexpr std::array<std::string_view, kReadings> kKeys = {
    "userCPU",      "systemCPU",    "idleCPU",      "niceCPU",      "tasksCount",
    "threadsCount", "loadAverage0", "loadAverage1", "loadAverage2",
};

/// "%u" stands for the index.
constexpr std::array<std::string_view, kProcessorReadings> kKeyForms = {
    "userCPUAll%u", "systemCPUAll%u", "idleCPUAll%u", "niceCPUAll%u",
    "userCPUPhy%u", "systemCPUPhy%u", "idleCPUPhy%u", "niceCPUPhy%u",
};

}  // namespace

std::string_view keyOf(Reading reading) {
  return kKeys.at(static_cast<std::size_t>(reading));
}

std::string keyOf(ProcessorReading reading, std::uint32_t index) {
  std::string_view form = kKeyForms.at(static_cast<std::size_t>(reading));
  form.remove_suffix(std::string_view("%u").size());
  return std::string(form) + std::to_string(index);
}

void CPUData::set(ProcessorReading reading, std::uint32_t index, float value) {
  auto& numbers = processorNumbers_[static_cast<std::size_t>(reading)];
  if (index >= numbers.size()) {
    numbers.resize(index + std::size_t{1});
  }
  numbers[index] = value;
}

std::optional<float> CPUData::find(ProcessorReading reading, std::uint32_t index) const {
  const auto& numbers = processorNumbers_[static_cast<std::size_t>(reading)];
  return index < numbers.size() ? numbers[index] : std::nullopt;
}

void CPUData::visit(Visitor& visitor) const {
  for (std::size_t i = 0; i < kReadings; ++i) {
    if (numbers_[i]) {
      visitor.number(kKeys[i], *numbers_[i]);
    }
  }
  for (std::size_t i = 0; i < kProcessorReadings; ++i) {
    for (std::uint32_t index = 0; index < processorNumbers_[i].size(); ++index) {
      if (const auto& number = processorNumbers_[i][index]) {
        visitor.number(keyOf(static_cast<ProcessorReading>(i), index), *number);
      }
    }
  }
  if (upTime_) {
    visitor.duration(kUpTimeKey, *upTime_);
  }
  if (topMemProcess_) {
    visitor.processes(kTopMemProcessKey, *topMemProcess_);
  }
  if (processesForNotification_) {
    visitor.pids(kProcessesForNotificationKey, *processesForNotification_);
  }
}

}  // namespace vel
