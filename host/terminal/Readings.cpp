#include "host/terminal/Readings.h"

#include <cmath>

namespace vel {
namespace {

std::optional<float> finite(std::optional<float> value) {
  return value && std::isfinite(*value) ? value : std::nullopt;
}

float numberOr0(std::optional<float> value) {
  return finite(value).value_or(0.0F);
}

}  // namespace

Readings::Share Readings::total() const {
  if (!user || !system) {
    return std::nullopt;
  }
  return *user + *system + nice.value_or(0.0F);
}

void Readings::read(const CPUData& record, const std::vector<RunningProcessor>& running) {
  user = finite(record.find(Reading::userCPU));
  system = finite(record.find(Reading::systemCPU));
  nice = finite(record.find(Reading::niceCPU));
  idle = finite(record.find(Reading::idleCPU));
  tasks = finite(record.find(Reading::tasksCount));
  threads = finite(record.find(Reading::threadsCount));
  load = {finite(record.find(Reading::loadAverage0)), finite(record.find(Reading::loadAverage1)),
          finite(record.find(Reading::loadAverage2))};
  upTime = record.upTime();

  processors.clear();
  numbers.clear();
  for (const auto& [number, index] : running) {
    if (const auto share = record.find(ProcessorReading::userCPUAll, index)) {
      processors.push_back(numberOr0(share) +
                           numberOr0(record.find(ProcessorReading::systemCPUAll, index)) +
                           numberOr0(record.find(ProcessorReading::niceCPUAll, index)));
      numbers.push_back(number);
    }
  }
}

}  // namespace vel
