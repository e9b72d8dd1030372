// What the terminal can do, by its name in the environment.
#pragma once

#include <string>

namespace vel {

/// Why no screen can be painted on standard output with the terminal type in TERM; empty if one
/// can.
std::string terminalTypeFault();

}  // namespace vel
