// The entries of an open directory.
#pragma once

#include <dirent.h>
#include <sys/types.h>
#include <unistd.h>

#include <cstddef>
#include <span>
#include <string_view>

namespace vel {

/// Calls `visit(const dirent64&, std::string_view name)` for each entry, from the first, until it
/// returns false; false itself when the directory cannot be listed. The caller chooses the buffer,
/// aligned for dirent64, because the kernel fills it: readdir(3) would fill one of its own, and a
/// large one.
template <typename Visit>
bool forEachEntry(int directory, std::span<char> buffer, Visit visit) {
  if (::lseek(directory, 0, SEEK_SET) != 0) {
    return false;
  }
  for (;;) {
    const ssize_t got = ::getdents64(directory, buffer.data(), buffer.size());
    if (got <= 0) {
      return got == 0;
    }
    for (std::size_t at = 0; at < static_cast<std::size_t>(got);) {
      const auto* const entry = reinterpret_cast<const dirent64*>(&buffer[at]);
      if (!visit(*entry, std::string_view(&entry->d_name[0]))) {
        return true;
      }
      at += entry->d_reclen;
    }
  }
}

}  // namespace vel
