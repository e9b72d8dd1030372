// The settings' way to the disk and back, by way of whatever may be in the way.
#include "host/store/SettingsStore.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <future>
#include <iterator>
#include <memory>
#include <random>
#include <thread>
#include <tuple>
#include <vector>

#include "platform/foundation/GlobalQueue.h"
#include "support/TemporaryDirectory.h"

namespace {

std::atomic<int> syncFault = 0;  ///< what fsync fails with
std::atomic<int> fileSyncs = 0;
std::atomic<int> directorySyncs = 0;

}  // namespace

/// Stands in for the C library's, to fail, to be counted and to be killed in: the death of a
/// process loses nothing that it has written, so that the disk itself need not be waited for.
extern "C" int fsync(int descriptor) {
  struct stat status {};
  fstat(descriptor, &status);
  ++(S_ISDIR(status.st_mode) ? directorySyncs : fileSyncs);
  if (const int fault = syncFault; fault != 0) {
    errno = fault;
    return -1;
  }
  return usleep(200);
}

namespace vel::test {
namespace {

namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

class Store : public testing::Test {
 protected:
  Store() { fs::create_directory(file.parent_path()); }

  void put(const std::string& text) { std::ofstream(file, std::ios::binary) << text; }
  [[nodiscard]] std::string text() const {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator(stream), {}};
  }
  [[nodiscard]] std::ptrdiff_t filesInDirectory() const {
    return std::distance(fs::directory_iterator(file.parent_path()), {});
  }
  std::unique_ptr<SettingsStore> open() {
    return std::make_unique<SettingsStore>(
        file, queue, [this](std::string message) { messages.push_back(std::move(message)); });
  }
  void expectMessage(const std::string& part) {
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].find(part), std::string::npos) << messages[0];
  }

  TemporaryDirectory directory;
  fs::path file = directory.path + "/velbar/settings.ini";
  Messages messages;
  GlobalQueue queue{1};
};

TEST_F(Store, keepsSettingsFromRunToRun) {
  fs::remove(file.parent_path());
  {
    const auto store = open();
    EXPECT_FALSE(fs::exists(file.parent_path()));
    store->setObject(INT64_MIN, "y", "a");
    store->setObject(3, "x", "b");
  }
  EXPECT_EQ(text(), "[a]\ny = -9223372036854775808\n\n[b]\nx = 3\n");
  EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms::owner_all);
  EXPECT_EQ(filesInDirectory(), 1);
  const auto store = open();
  EXPECT_EQ(store->objectForKey("y", "a"), INT64_MIN);
  EXPECT_EQ(messages, Messages{});
}

TEST_F(Store, joinsChangesAndMergesThemWithAnEdit) {
  put("[a]\nx = 1\ny = 1\n");
  auto store = open();
  std::promise<void> gate;
  queue.async([&] { gate.get_future().wait(); });
  fileSyncs = directorySyncs = 0;
  for (int value = 100; value-- > 0;) {
    store->setObject(value, "y", "a");
    store->setObject(value, "new", "a");
  }
  put("# edited\n[a]\nx = 7\ny = 1\n\n[c]\nz = 8\n");
  fs::permissions(file, fs::perms::owner_read | fs::perms::group_read);
  gate.set_value();
  queue.waitUntilIdle();
  EXPECT_EQ(text(), "# edited\n[a]\nx = 7\ny = 0\nnew = 0\n\n[c]\nz = 8\n");
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::group_read);
  EXPECT_EQ(store->objectForKey("x", "a"), 1);
  store->setObject(0, "y", "a");
  store.reset();
  EXPECT_EQ(fileSyncs, 1);
  EXPECT_EQ(directorySyncs, 1);
}

TEST_F(Store, writesThroughLinks) {
  const fs::path dotfiles = directory.path + "/dotfiles";
  fs::create_directory(dotfiles);
  fs::create_symlink("../dotfiles/link", file);
  fs::create_symlink("velbar.ini", dotfiles / "link");
  put("broken");
  open()->setObject(1, "x", "a");  // to where nothing is any more
  open()->setObject(2, "x", "a");
  EXPECT_TRUE(fs::is_symlink(file) && fs::is_symlink(dotfiles / "link"));
  EXPECT_EQ(text(), "[a]\nx = 2\n");
  expectMessage("/velbar.ini.broken-");

  // No target of ours to move or to replace.
  const fs::path pipe = dotfiles / "velbar.ini";
  fs::remove(pipe);
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  open()->setObject(3, "x", "a");
  EXPECT_TRUE(fs::is_fifo(pipe));
  EXPECT_EQ(text(), "[a]\nx = 3\n");
}

TEST_F(Store, movesAsideWhatIsNoSettingsFile) {
  const std::string syntax = ": expected [section], key = value or a comment";
  const std::pair<std::string, std::string> cases[] = {
      {"[a]\nx = 1\nwhat\n", ":3" + syntax},
      {"[a]\n[b\n", ":2" + syntax},
      {"[a]\r\n\r\n= 1", ":3" + syntax},
      {"[a] # comment", ":1" + syntax},
      {std::string("[a]\n#\0", 6), ":2: a NUL byte, expected text"},
      {std::string((1U << 20U) + 1, '#'), ": bigger than 1 MiB"},
      {"", ": not a regular file"},  // but a pipe
  };
  std::ptrdiff_t files = 1;
  for (const auto& [content, message] : cases) {
    for (const bool whileRunning : {false, true}) {
      SCOPED_TRACE(message + (whileRunning ? " while running" : ""));
      put("[a]\ny = 4\n");
      auto store = whileRunning ? open() : nullptr;
      fs::remove(file);
      content.empty() ? static_cast<void>(mkfifo(file.c_str(), 0600)) : put(content);
      if (!whileRunning) {
        store = open();
        EXPECT_FALSE(fs::exists(file));
        EXPECT_EQ(store->objectForKey("x", "a"), std::nullopt);
      }
      store->setObject(5, "x", "a");
      store.reset();
      EXPECT_EQ(text(), whileRunning ? "[a]\nx = 5\ny = 4\n" : "[a]\nx = 5\n");  // what it knows
      EXPECT_EQ(filesInDirectory(), ++files);  // none took another's place
      const std::string start = file.string() + message + "; moved aside to ";
      expectMessage(start);
      EXPECT_TRUE(fs::exists(messages.at(0).substr(start.size())));
      messages.clear();
    }
  }
}

TEST_F(Store, tellsOnceOfAValueThatIsNoInteger) {
  const std::string before = "[a]\nx = 1 # one\nz = 9223372036854775808\nforeign = word\n";
  put(before + "long = " + std::string(1000, '9') + "\n");
  auto store = open();
  for (const char* key : {"x", "z", "long", "x", "z", "long"}) {
    EXPECT_EQ(store->objectForKey(key, "a"), std::nullopt);
  }
  const std::string at = file.string() + ":";
  const std::string end = ", expected an integer";
  EXPECT_EQ(messages, (Messages{at + "2: \"x\" is \"1 # one\"" + end,
                                at + "3: \"z\" is \"9223372036854775808\"" + end,
                                at + "5: \"long\" is \"" + std::string(60, '9') + "...\"" + end}));
  store->setObject(0, "long", "a");
  EXPECT_EQ(store->objectForKey("long", "a"), 0);
  store.reset();
  EXPECT_EQ(text(), before + "long = 0\n");
}

TEST_F(Store, worksForThisRunWhereItCannotWrite) {
  const std::tuple<std::string, std::string, const char*> cases[] = {
      // No settings, and root cannot rename it either.
      {"/proc/version", "x",
       ":1: expected [section], key = value or a comment; cannot be moved aside"},
      {"/proc/none/settings.ini", "x",
       ": cannot be written: No such file or directory; changes last"},
      {file, "]\nx", ": \"]\nx\" of \"a\": Invalid argument; changes last for this run only"},
  };
  for (const auto& [path, key, message] : cases) {
    SCOPED_TRACE(message);
    file = path;
    const std::string before = text();
    const auto store = open();
    for (const int value : {1, 2}) {
      store->setObject(value, key, "a");
      queue.waitUntilIdle();
      EXPECT_EQ(store->objectForKey(key, "a"), value);
    }
    EXPECT_EQ(text(), before);
    expectMessage(path + message);
    messages.clear();
  }
}

TEST_F(Store, writesAtTheEndWhatItCouldNotBefore) {
  rlimit whole{};
  getrlimit(RLIMIT_FSIZE, &whole);
  std::signal(SIGXFSZ, SIG_IGN);
  const std::string before = "[a]\nx = 0\n";
  for (const bool full : {false, true}) {
    SCOPED_TRACE(full);
    put(before);
    auto store = open();
    const rlimit limit{full ? whole.rlim_cur : 8, whole.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
    syncFault = full ? ENOSPC : 0;
    for (const int value : {1, 2}) {
      store->setObject(value, "x", "a");
      queue.waitUntilIdle();
    }
    setrlimit(RLIMIT_FSIZE, &whole);
    syncFault = 0;
    EXPECT_EQ(text(), before);
    EXPECT_EQ(filesInDirectory(), 1);
    store.reset();
    EXPECT_EQ(text(), "[a]\nx = 2\n");
    expectMessage(full ? ": No space left on device; changes" : ": File too large; changes");
    messages.clear();
  }
}

TEST_F(Store, twoProgramsLoseNoneOfTheirChanges) {
  const auto fill = [this](const char* bundle) {
    GlobalQueue itsQueue;
    SettingsStore store(file, itsQueue, [](const std::string& message) { FAIL() << message; });
    for (int key = 0; key < 20; ++key) {
      store.setObject(key, std::to_string(key), bundle);
      itsQueue.waitUntilIdle();
    }
  };
  std::thread other(fill, "b");
  fill("a");
  other.join();
  EXPECT_EQ(SettingsDocument(text()).entries().size(), 40U);
}

TEST_F(Store, aKillLeavesTheOldOrTheNewSettings) {
  // More than one block of the disk, so that half of it could be there.
  const auto settings = [](std::int64_t value) {
    return "[a]\nx = " + std::to_string(value) + "\n" + std::string(20'000, '#') + "\n";
  };
  put(settings(0));
  std::mt19937 random(20240229);
  std::uniform_int_distribution<useconds_t> microseconds(0, 2'000);
  std::ptrdiff_t leftovers = 0;
  for (std::int64_t value = 0; value < 1'000;) {
    const pid_t writer = fork();
    if (writer == 0) {
      GlobalQueue itsQueue;
      SettingsStore store(file, itsQueue, [](const std::string& /*message*/) { _exit(1); });
      while (true) {
        store.setObject(++value, "x", "a");
        itsQueue.waitUntilIdle();
      }
    }
    while (text() == settings(value)) {
      ASSERT_EQ(waitpid(writer, nullptr, WNOHANG), 0) << "it has ended by itself";
    }
    usleep(microseconds(random));
    kill(writer, SIGKILL);
    waitpid(writer, nullptr, 0);
    const std::int64_t before = value;
    value = open()->objectForKey("x", "a").value_or(0);
    ASSERT_GT(value, before);
    ASSERT_EQ(text(), settings(value));
    ASSERT_LE(filesInDirectory(), 2);
    leftovers += filesInDirectory() - 1;
  }
  EXPECT_GT(leftovers, 0) << "no kill met a write";
}

}  // namespace
}  // namespace vel::test
