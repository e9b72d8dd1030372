// What the user types at the display.
#pragma once

#include <string_view>

namespace vel {

/// Reads what waits on the terminal `descriptor`. True if the user asks to quit or the terminal has
/// been closed.
bool readsEnd(int descriptor);

/// Whether a q is among the keys whose bytes these are; the letters in a function key's bytes are
/// none.
bool asksToQuit(std::string_view keys);

}  // namespace vel
