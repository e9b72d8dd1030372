// /proc/<pid>/cgroup: what is found is a unit's path out of one whole line, and finds itself again.
#include "fuzz/Fuzzing.h"
#include "platform/linux/ControlGroup.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = vel::fuzz::textOf(data, size);
  const std::string unit(vel::unitPath(text));
  if (!unit.empty()) {
    vel::fuzz::require(unit.ends_with(".scope") || unit.ends_with(".service"));
    vel::fuzz::require(unit.find('\n') == std::string::npos && text.find(unit) < text.rfind('\n'));
    vel::fuzz::require(vel::unitPath("0::" + unit + '\n') == unit);
    vel::fuzz::require(vel::unitPath("1:name=systemd:" + unit + "/x\n") == unit);
  }
  return 0;
}
