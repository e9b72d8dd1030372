// Reads a resource file at once.
#pragma once

#include <filesystem>
#include <string>
#include <system_error>

namespace vel {

/// Replaces `into` by the file's bytes. What is no regular file, or larger than 16 MiB, is refused
/// before it is opened. After an error `into` is of no use.
std::error_code readFile(const std::filesystem::path& file, std::string& into);

}  // namespace vel
