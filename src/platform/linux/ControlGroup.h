// The text of /proc/<pid>/cgroup (man 7 cgroups).
#pragma once

#include <string_view>

namespace vel {

/// The path of the service manager's unit that the process is in, which ends in ".service" or
/// ".scope"; empty when it is in none. A unit may be inside another, and the innermost one counts;
/// groups that a unit has made inside itself are part of it.
///
/// The manager's hierarchy is the unified one ("0::/path") or, on older machines, one of its own
/// ("1:name=systemd:/path"); some have both and units in only one of them.
std::string_view unitPath(std::string_view text);

/// Whether the unit of that path is a login session, where every program is that was started in it
/// without a unit of its own.
bool isSessionUnit(std::string_view path);

}  // namespace vel
