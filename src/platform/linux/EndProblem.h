// Why a process cannot be ended.
#pragma once

#include <cstdint>

namespace vel {

enum class EndProblem : std::uint8_t {
  endedAlready,
  isAnother,      ///< the number belongs to another process than was shown, or to another row
  kernelThread,   ///< which ignores signals
  notPermitted,   ///< to this user
  notOfThisHost,  ///< shown from another system or pid namespace
  unsupported,    ///< the kernel has no pidfd, or a sandbox denies it
  failed,
};

}  // namespace vel
