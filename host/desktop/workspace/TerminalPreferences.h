// The terminals that the user's configuration names.
#pragma once

#include <string>
#include <vector>

namespace vel {

/// Entry identifiers without ".desktop", the most wanted first, from the files
/// <desktop>-xdg-terminals.list and xdg-terminals.list of each configuration directory, the user's
/// first, as the Default Terminal Execution proposal has them. `desktops` are in lower case. What
/// only concerns other readers is left out: comments, options, exclusions, and the action that may
/// follow an identifier after a colon.
std::vector<std::string> preferredTerminals(const std::vector<std::string>& desktops);

}  // namespace vel
