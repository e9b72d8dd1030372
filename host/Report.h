// What a host has to say about trouble, on standard error.
#pragma once

#include <string>
#include <string_view>

namespace vel {

/// Writes "<program>: <message>" as exactly one line, whatever the message quotes.
void report(std::string_view program, std::string_view message);

/// The text with every control character, C1 controls in UTF-8 included, replaced by "?".
std::string withoutControls(std::string_view text);

}  // namespace vel
