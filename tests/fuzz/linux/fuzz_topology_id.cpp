// The one number of a topology file, told the same when it is written again.
#include "fuzz/Fuzzing.h"
#include "platform/linux/Topology.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (const auto id = vel::parseTopologyId(vel::fuzz::textOf(data, size))) {
    vel::fuzz::require(vel::parseTopologyId(std::to_string(*id) + "\n") == id);
  }
  return 0;
}
