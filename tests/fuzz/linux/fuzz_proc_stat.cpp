// /proc/stat: processors ascend within bounds, and a text that is cut tells nothing new.
#include <optional>
#include <vector>

#include "fuzz/Fuzzing.h"
#include "platform/linux/ProcStat.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = vel::fuzz::textOf(data, size);
  std::vector<vel::CpuLine> seen;
  vel::forEachCpu(text, [&](const vel::CpuLine& line) {
    const std::int32_t last = seen.empty() ? -1 : seen.back().cpu;
    vel::fuzz::require(line.cpu > last && line.cpu <= vel::CpuList::kMaxCpu);
    seen.push_back(line);
  });
  const std::string cut = text.substr(0, size / 2);
  std::size_t i = 0;
  vel::forEachCpu(cut, [&](const vel::CpuLine& line) {
    vel::fuzz::require(i < seen.size() && line.ticks == seen[i].ticks);
    ++i;
  });
  const auto bootTime = vel::parseBootTime(cut);
  vel::fuzz::require(!bootTime || bootTime == vel::parseBootTime(text));
  return 0;
}
