// A directory of a test's own, which goes with it.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>

namespace vel::test {

struct TemporaryDirectory {
  TemporaryDirectory() { EXPECT_NE(mkdtemp(path.data()), nullptr); }
  ~TemporaryDirectory() { std::filesystem::remove_all(path); }
  TemporaryDirectory(const TemporaryDirectory&) = delete;
  TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

  std::string path = std::filesystem::temp_directory_path() / "vel-XXXXXX";
};

}  // namespace vel::test
