// /proc/<pid>/stat: values are in range, and another name changes none of them.
#include <cstdint>

#include "fuzz/Fuzzing.h"
#include "platform/linux/ProcPidStat.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = vel::fuzz::textOf(data, size);
  const auto stat = vel::parseProcPidStat(text);
  if (!stat) {
    return 0;
  }
  vel::fuzz::require(stat->pid > 0 && stat->parent >= 0 && stat->threads >= 0 && stat->state > ' ');
  vel::fuzz::require(stat->residentPages <= INT64_MAX);
  std::string renamed = text;
  const std::string name = ") S 2 (" + std::string(stat->name);
  renamed.replace(static_cast<std::size_t>(stat->name.data() - text.data()), stat->name.size(),
                  name);
  const auto again = vel::parseProcPidStat(renamed);
  vel::fuzz::require(again && again->name == name && again->parent == stat->parent &&
                     again->userTicks == stat->userTicks && again->threads == stat->threads &&
                     again->startTicks == stat->startTicks &&
                     again->residentPages == stat->residentPages);
  return 0;
}
