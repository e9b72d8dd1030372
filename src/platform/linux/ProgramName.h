// What to call a process.
#pragma once

#include <string>
#include <string_view>

namespace vel {

/// Whether a program of that command name only prepares for another (a sandbox, another user, a
/// limit): what runs inside gives the name.
bool isWrapper(std::string_view command);

/// Whether the command's name alone does not tell; that of an interactive shell does.
bool needsCommandLine(std::string_view command, bool controlsJobs);

/// The command's name (man 5 proc, comm), which the kernel cuts after 15 bytes: whole, if the
/// command line begins with a file of a name that goes on; of a shell that runs a script, the
/// script's, or that of the one program that it has been told to run. `arguments` as in
/// /proc/<pid>/cmdline, empty if not known; they are what the process says of itself.
std::string programName(std::string_view command, std::string_view arguments);

}  // namespace vel
