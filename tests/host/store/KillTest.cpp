// A writer that is killed at any moment leaves the old or the new settings, whole.
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <random>

#include "support/TemporaryDirectory.h"

namespace vel::test {
namespace {

/// Starts the writer, and kills it when it has written some values and lived on a little. Returns
/// the last value that it has told of.
std::int64_t writeAndKill(const std::string& file, std::int64_t from, int writes,
                          useconds_t further) {
  int ends[2];
  EXPECT_EQ(pipe(ends), 0);
  const pid_t writer = fork();
  if (writer == 0) {
    dup2(ends[1], STDOUT_FILENO);
    execl(VEL_SETTINGS_WRITER, "settings_writer", file.c_str(), std::to_string(from + 1).c_str(),
          nullptr);
    _exit(1);
  }
  close(ends[1]);
  std::int64_t last = from;
  for (int i = 0; i < writes; ++i) {
    EXPECT_EQ(read(ends[0], &last, sizeof last), ssize_t{sizeof last});
  }
  usleep(further);
  kill(writer, SIGKILL);
  while (read(ends[0], &last, sizeof last) > 0) {
  }
  close(ends[0]);
  int status = 0;
  waitpid(writer, &status, 0);
  EXPECT_TRUE(WIFSIGNALED(status));
  return last;
}

TEST(Kill, leavesTheOldOrTheNewSettings) {
  const TemporaryDirectory directory;
  const std::string file = directory.path + "/settings.ini";
  // More than one block of the disk, so that half of it could be there.
  const std::string before = "[test]\n", after = "\n" + std::string(20'000, '#') + "\n";
  std::ofstream(file) << before << "value = 0" << after;

  constexpr unsigned kSeed = 20240229;
  std::cout << "seed " << kSeed << "\n";
  std::mt19937 random(kSeed);
  std::uniform_int_distribution<int> writes(1, 20);
  std::uniform_int_distribution<useconds_t> microseconds(0, 1'000);
  std::int64_t value = 0;
  int rounds = 0, leftovers = 0, unacknowledged = 0;
  for (; value < 1'000 && !HasFailure(); ++rounds) {
    const std::int64_t written = writeAndKill(file, value, writes(random), microseconds(random));
    std::ifstream stream(file);
    const std::string text{std::istreambuf_iterator(stream), {}};
    value = text == before + "value = " + std::to_string(written) + after ? written : written + 1;
    ASSERT_EQ(text, before + "value = " + std::to_string(value) + after);
    const auto files = std::distance(std::filesystem::directory_iterator(directory.path), {});
    ASSERT_LE(files, 2);
    leftovers += files == 2;
    unacknowledged += value != written;
  }
  std::cout << value << " writes, " << rounds << " kills, " << leftovers
            << " with a temporary file, " << unacknowledged << " right after the replacement\n";
  EXPECT_GT(leftovers, 0) << "no kill met a write";
}

}  // namespace
}  // namespace vel::test
