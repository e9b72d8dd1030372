// A list of processors: ascending within bounds, counted right, and the same when built by hand.
#include "fuzz/Fuzzing.h"
#include "platform/linux/CpuList.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  vel::CpuList list;
  const bool parsed = list.parse(vel::fuzz::textOf(data, size));
  vel::fuzz::require(parsed != list.empty());
  vel::CpuList byHand;
  std::int32_t last = -1;
  list.forEach([&](std::int32_t cpu) {
    vel::fuzz::require(cpu > last && cpu <= vel::CpuList::kMaxCpu && list.contains(cpu));
    byHand.append(last = cpu);
  });
  vel::fuzz::require(byHand == list && byHand.count() == list.count());
  return 0;
}
