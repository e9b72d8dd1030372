// /proc/loadavg: what is told to be delivered is a number that can be; the rest is not touched.
#include <cmath>

#include "fuzz/Fuzzing.h"
#include "platform/linux/ProcLoadavg.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = vel::fuzz::textOf(data, size);
  std::array<double, 3> averages{-1, -1, -1};
  int delivered = vel::parseLoadAverages(text, averages);
  vel::fuzz::require(delivered == -1 || (delivered >= 1 && delivered <= 3));
  for (const double average : averages) {
    vel::fuzz::require(delivered-- > 0 ? std::isfinite(average) && average >= 0 : average == -1);
  }
  vel::fuzz::require(vel::parseThreadCount(text).value_or(1) > 0);
  return 0;
}
