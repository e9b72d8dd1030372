// The terminal host's command line.
#pragma once

#include <cstdint>
#include <optional>

#include "host/HostOptions.h"

namespace vel {

struct Options : HostOptions {
  std::optional<std::uint64_t> count;  ///< refreshes after which the program ends
  bool once = false;
  bool json = false;
  bool notify = false;
};

/// Fills `options` or answers in the program's place. `version` is the project's.
std::optional<CommandLineAnswer> parseOptions(int argc, const char* const* argv,
                                              const char* version, Options& options);

}  // namespace vel
