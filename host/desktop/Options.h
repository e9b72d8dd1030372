// The desktop host's command line.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

#include "host/HostOptions.h"

namespace vel {

enum class Edge : std::uint8_t { top, bottom };

struct DesktopOptions : HostOptions {
  Edge edge = Edge::top;
  bool fullWidth = false;  ///< a bar that reserves its place, not a strip
  bool tray = false;
  bool widget = false;
  bool preferences = false;  ///< opened at the start, or in the Velbar that runs already
  bool panel = false;        ///< so too
  std::optional<std::filesystem::path> snapshots;
};

/// Fills `options` or answers in the program's place. `version` is the project's.
std::optional<CommandLineAnswer> parseDesktopOptions(int argc, const char* const* argv,
                                                     const char* version, DesktopOptions& options);

}  // namespace vel
