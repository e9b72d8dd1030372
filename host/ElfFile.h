// Looks at a shared library before the dynamic linker maps it.
#pragma once

#include <filesystem>
#include <string>

namespace vel {

/// Why `file` is not a whole shared library for the machine that this program was built for; empty
/// if it is, or if it cannot be read, of which the dynamic linker tells more. The linker itself
/// trusts the headers: a segment that they promise and the file lacks kills the program (SIGBUS).
std::string sharedLibraryFault(const std::filesystem::path& file);

}  // namespace vel
