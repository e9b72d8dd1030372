// How many processes the system has.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <optional>

#include "platform/linux/FileDescriptor.h"

namespace vel {

/// On procfs the count is taken from the root directory's link count, which holds the processes
/// that hidepid hides as well. It costs the same for any number of processes, except that the
/// kernel passes over each hidden one. Any other directory is listed.
class ProcessCount {
 public:
  explicit ProcessCount(std::filesystem::path proc);

  /// Nothing when the directory cannot be read or has no process.
  std::optional<std::int32_t> read();

 private:
  std::optional<std::uint64_t> countByLinks();
  std::optional<std::uint64_t> countByListing();

  std::filesystem::path proc_;
  FileDescriptor directory_;
  bool onProcfs_ = false;

  /// Small, because procfs fills it: the entries of processes that come after those of interest
  /// cost time.
  alignas(std::max_align_t) std::array<char, 1024> entries_{};
};

}  // namespace vel
