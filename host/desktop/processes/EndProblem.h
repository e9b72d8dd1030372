// Why a process cannot be ended.
#pragma once

#include <cstdint>

namespace vel {

enum class EndProblem : std::uint8_t {
  endedAlready,
  /// The number belongs to another process than was shown, or to the same under another name.
  isAnother,
  kernelThread,   ///< which ignores signals
  notPermitted,   ///< to this user
  notOfThisHost,  ///< shown from another system or pid namespace
  unsupported,    ///< the kernel has no pidfd, or a sandbox denies it
  failed,
};

}  // namespace vel
