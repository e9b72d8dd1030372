// A process as a part of the application that it belongs to.
#pragma once

#include <cstdint>
#include <string>

namespace vel {

struct ApplicationProcess {
  std::int32_t pid = 0;
  std::uint64_t startTicks = 0;  ///< since the machine was started; tells it from others of its pid
  std::string name;              ///< the command's, any bytes but NUL
  std::uint32_t recentMicroseconds = 0;  ///< of CPU time, that of earlier readings fading
  bool controlsJobs = false;             ///< an interactive shell
  bool isKernelThread = false;
};

}  // namespace vel
