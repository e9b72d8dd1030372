// A machine's procfs and sysfs as ordinary files in a temporary directory.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "support/TemporaryDirectory.h"

namespace vel::test {

/// Removed with the object. Paths are relative: "proc/stat", "sys/devices/system/cpu/present". What
/// cannot be done is thrown as an exception derived from std::exception.
class MachineTree {
 public:
  /// A tree with nothing in it, not even the two roots.
  MachineTree() = default;

  /// The tree of tests/fixtures/`fixture`.tree; tests/fixtures/capture describes the format.
  explicit MachineTree(const std::string& fixture);

  [[nodiscard]] std::filesystem::path proc() const { return absolute("proc"); }
  [[nodiscard]] std::filesystem::path sys() const { return absolute("sys"); }
  [[nodiscard]] std::filesystem::path absolute(const std::filesystem::path& path) const {
    return std::filesystem::path(directory_.path) / path.relative_path();
  }

  /// Makes the file, or gives it another content, and makes the directories that it needs.
  void write(const std::filesystem::path& path, std::string_view content) const;

 private:
  void addSection(std::string_view title, std::string_view content) const;

  TemporaryDirectory directory_;
};

}  // namespace vel::test
