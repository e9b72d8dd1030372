// A directory of a test's own, which goes with it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>

namespace vel::test {

struct TemporaryDirectory {
  TemporaryDirectory() {
    if (mkdtemp(path.data()) == nullptr) {
      throw std::runtime_error(path + ": cannot be made");
    }
  }
  ~TemporaryDirectory() { std::filesystem::remove_all(path); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::string path = std::filesystem::temp_directory_path() / "vel-XXXXXX";
};

}  // namespace vel::test
