// /proc/stat: processors ascend within bounds, and a text that is cut tells nothing new.
#include <optional>
#include <vector>

#include "fuzz/Fuzzing.h"
#include "platform/linux/ProcStat.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = vel::fuzz::textOf(data, size);
  std::vector<vel::CpuTicks> seen;
  vel::forEachCpu(text, [&](const vel::CpuTicks& ticks) {
    const std::int32_t last = seen.empty() ? -1 : seen.back().cpu;
    vel::fuzz::require(ticks.cpu > last && ticks.cpu <= vel::CpuList::kMaxCpu);
    seen.push_back(ticks);
  });
  const std::string cut = text.substr(0, size / 2);
  std::size_t i = 0;
  vel::forEachCpu(cut, [&](const vel::CpuTicks& ticks) {
    vel::fuzz::require(i < seen.size() && ticks.user == seen[i].user && ticks.idle == seen[i].idle);
    ++i;
  });
  const auto bootTime = vel::parseBootTime(cut);
  vel::fuzz::require(!bootTime || bootTime == vel::parseBootTime(text));
  return 0;
}
