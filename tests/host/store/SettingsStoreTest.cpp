// The settings' way to the disk and back, by way of whatever may be in the way.
#include "host/store/SettingsStore.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <csignal>
#include <fstream>
#include <future>
#include <iterator>
#include <memory>
#include <thread>
#include <vector>

#include "support/TemporaryDirectory.h"
#include "platform/foundation/GlobalQueue.h"

namespace {

std::atomic<int> syncFault = 0;  ///< what fsync fails with
std::atomic<int> fileSyncs = 0;
std::atomic<int> directorySyncs = 0;

}  // namespace

/// Stands in for the C library's, to fail and to be counted.
extern "C" int fsync(int descriptor) {
  struct stat status {};
  fstat(descriptor, &status);
  ++(S_ISDIR(status.st_mode) ? directorySyncs : fileSyncs);
  if (const int fault = syncFault; fault != 0) {
    errno = fault;
    return -1;
  }
  return static_cast<int>(syscall(SYS_fsync, descriptor));
}

namespace vel::test {
namespace {

namespace fs = std::filesystem;
using Messages = std::vector<std::string>;

/// Until a queue of one thread has run what it has.
void waitFor(Queue& queue) {
  std::promise<void> done;
  queue.async([&] { done.set_value(); });
  done.get_future().wait();
}

class Store : public testing::Test {
 protected:
  Store() { fs::create_directory(file.parent_path()); }

  void put(const std::string& text) { std::ofstream(file, std::ios::binary) << text; }
  [[nodiscard]] std::string text() const {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator(stream), {}};
  }
  /// Those in the file's directory other than the file.
  [[nodiscard]] std::vector<fs::path> otherFiles() const {
    std::vector<fs::path> others;
    for (const auto& entry : fs::directory_iterator(file.parent_path())) {
      if (entry.path() != file) {
        others.push_back(entry.path());
      }
    }
    return others;
  }
  std::unique_ptr<SettingsStore> open() {
    return std::make_unique<SettingsStore>(
        file, queue, [this](std::string message) { messages.push_back(std::move(message)); });
  }
  TemporaryDirectory directory;
  fs::path file = directory.path + "/velbar/settings.ini";
  Messages messages;
  GlobalQueue queue{1};
};

TEST_F(Store, keepsSettingsFromRunToRun) {
  fs::remove(file.parent_path());
  fs::permissions(directory.path, fs::perms::all);
  {
    const auto store = open();
    EXPECT_FALSE(fs::exists(file.parent_path()));
    EXPECT_EQ(store->objectForKey("x", "a"), std::nullopt);
    store->setObject(0, "x", "a");
    store->setObject(INT64_MIN, "y", "a");
    store->setObject(3, "x", "b");
    EXPECT_EQ(store->objectForKey("x", "a"), 0);
  }
  EXPECT_EQ(text(), "[a]\nx = 0\ny = -9223372036854775808\n\n[b]\nx = 3\n");
  EXPECT_EQ(fs::status(file.parent_path()).permissions(), fs::perms::owner_all);
  EXPECT_TRUE(otherFiles().empty());
  const auto store = open();
  EXPECT_EQ(store->objectForKey("y", "a"), INT64_MIN);
  EXPECT_EQ(store->objectForKey("y", "b"), std::nullopt);
  EXPECT_EQ(messages, Messages{});
}

TEST_F(Store, joinsChangesAndWritesNoneTwice) {
  put("[a]\nx = 1\n");
  fs::permissions(file, fs::perms::owner_read | fs::perms::group_read);
  auto store = open();
  std::promise<void> gate;
  queue.async([&] { gate.get_future().wait(); });
  fileSyncs = directorySyncs = 0;
  for (int value = 100; value-- > 0;) {
    store->setObject(value, "x", "a");
    store->setObject(value, "y", "a");
  }
  gate.set_value();
  waitFor(queue);
  EXPECT_EQ(text(), "[a]\nx = 0\ny = 0\n");
  store->setObject(0, "x", "a");
  store.reset();
  EXPECT_EQ(fileSyncs, 1);
  EXPECT_EQ(directorySyncs, 1);
  EXPECT_EQ(fs::status(file).permissions(), fs::perms::owner_read | fs::perms::group_read);
}

TEST_F(Store, mergesWithEditsMadeMeanwhile) {
  put("[a]\nx = 1\ny = 1\n");
  auto store = open();
  put("# edited\n[a]\nx = 7\ny = 1\n\n[c]\nz = 8\n");
  store->setObject(2, "y", "a");
  EXPECT_EQ(store->objectForKey("x", "a"), 1);
  store.reset();
  EXPECT_EQ(text(), "# edited\n[a]\nx = 7\ny = 2\n\n[c]\nz = 8\n");
}

TEST_F(Store, writesThroughLinks) {
  const fs::path dotfiles = directory.path + "/dotfiles";
  fs::create_directory(dotfiles);
  fs::create_symlink("../dotfiles/link", file);
  fs::create_symlink("velbar.ini", dotfiles / "link");
  open()->setObject(1, "x", "a");  // to where nothing is yet
  open()->setObject(2, "x", "a");
  EXPECT_TRUE(fs::is_symlink(file) && fs::is_symlink(dotfiles / "link"));
  EXPECT_EQ(text(), "[a]\nx = 2\n");
  put("broken");
  open()->setObject(3, "x", "a");
  EXPECT_TRUE(fs::is_symlink(file));
  EXPECT_EQ(text(), "[a]\nx = 3\n");
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_NE(messages[0].find("/velbar.ini.broken-"), std::string::npos) << messages[0];

  // No target of ours to move or to replace.
  fs::remove(file);
  fs::create_symlink("/dev/null", file);
  open()->setObject(4, "x", "a");
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
  EXPECT_EQ(text(), "[a]\nx = 4\n");
}

TEST_F(Store, movesAsideWhatIsNoSettingsFile) {
  const struct {
    const char* what;
    std::function<void()> make;
    std::string message;
  } cases[] = {
      {"syntax", [&] { put("[a]\nx = 1\nwhat\n"); },
       ":3: expected [section], key = value or a comment"},
      {"NUL", [&] { put(std::string("[a]\nx = \0", 9)); }, ":2: a NUL byte, expected text"},
      {"size", [&] { put(std::string((1U << 20U) + 1, '#')); }, ": bigger than 1 MiB"},
      {"directory", [&] { fs::create_directories(file / "full"); }, ": not a regular file"},
      {"pipe", [&] { mkfifo(file.c_str(), 0600); }, ": not a regular file"},
  };
  std::size_t aside = 0;
  for (const auto& [what, make, message] : cases) {
    for (const bool whileRunning : {false, true}) {
      SCOPED_TRACE(std::string(what) + (whileRunning ? " while running" : ""));
      fs::remove_all(file);
      messages.clear();
      put("[a]\ny = 4\n");
      auto store = whileRunning ? open() : nullptr;
      fs::remove(file);
      make();
      if (!whileRunning) {
        store = open();
        EXPECT_FALSE(fs::exists(file));
        EXPECT_EQ(store->objectForKey("x", "a"), std::nullopt);
      }
      store->setObject(5, "x", "a");
      store.reset();
      EXPECT_EQ(text(), "[a]\nx = 5\n");
      EXPECT_EQ(otherFiles().size(), ++aside);  // none took another's place
      ASSERT_EQ(messages.size(), 1U);
      const std::string start = file.string() + message + "; moved aside to ";
      EXPECT_EQ(messages[0].substr(0, start.size()), start);
      EXPECT_TRUE(fs::exists(messages[0].substr(start.size()))) << messages[0];
    }
  }
}

TEST_F(Store, leavesWhatItCannotMoveAside) {
  file = "/proc/version";  // no settings, and root cannot rename it either
  const std::string before = text();
  const auto store = open();
  for (const int value : {1, 2}) {
    store->setObject(value, "x", "a");
    waitFor(queue);
    EXPECT_EQ(store->objectForKey("x", "a"), value);
  }
  EXPECT_EQ(text(), before);
  ASSERT_EQ(messages.size(), 1U);
  EXPECT_EQ(messages[0].find("/proc/version:1: expected [section], key = value or a comment; "
                             "cannot be moved aside: "),
            0U)
      << messages[0];
}

TEST_F(Store, tellsOnceOfAValueThatIsNoInteger) {
  const std::string before = "[a]\nx = 1 # one\ny =\nz = 9223372036854775808\nforeign = word\n";
  put(before + "long = " + std::string(1000, '9') + "\n");
  auto store = open();
  for (int time = 0; time < 2; ++time) {
    for (const char* key : {"x", "y", "z", "long"}) {
      EXPECT_EQ(store->objectForKey(key, "a"), std::nullopt);
    }
  }
  const std::string place = file.string() + ":";
  EXPECT_EQ(messages,
            (Messages{
                place + "2: \"x\" is \"1 # one\", expected an integer",
                place + "3: \"y\" is \"\", expected an integer",
                place + "4: \"z\" is \"9223372036854775808\", expected an integer",
                place + "6: \"long\" is \"" + std::string(60, '9') + "...\", expected an integer",
            }));
  store->setObject(0, "long", "a");
  EXPECT_EQ(store->objectForKey("long", "a"), 0);
  store.reset();
  EXPECT_EQ(text(), before + "long = 0\n");
}

TEST_F(Store, worksForThisRunWhereItCannotWrite) {
  rlimit whole{};
  getrlimit(RLIMIT_FSIZE, &whole);
  std::signal(SIGXFSZ, SIG_IGN);
  const auto limitFiles = [&](rlim_t size) {
    const rlimit limit{size, whole.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  };
  const fs::path itsDirectory = file.parent_path();
  const struct {
    const char* fault;
    std::function<void()> obstruct;
    std::function<void()> clear;
  } cases[] = {
      {"File too large", [&] { limitFiles(8); }, [&] { limitFiles(whole.rlim_cur); }},
      {"No space left on device", [] { syncFault = ENOSPC; }, [] { syncFault = 0; }},
      {"Not a directory",
       [&] {
         fs::rename(itsDirectory, directory.path + "/away");
         std::ofstream(itsDirectory) << "a file";
       },
       [&] {
         fs::remove(itsDirectory);
         fs::rename(directory.path + "/away", itsDirectory);
       }},
      {"File exists", [&] { fs::create_directories(file.string() + ".tmp/full"); },
       [&] { fs::remove_all(file.string() + ".tmp"); }},
  };
  const std::string before = "[a]\nx = 0\n";
  for (const auto& [fault, obstruct, clear] : cases) {
    SCOPED_TRACE(fault);
    put(before);
    messages.clear();
    auto store = open();
    obstruct();
    for (const int value : {1, 2}) {
      store->setObject(value, "x", "a");
      waitFor(queue);
      EXPECT_EQ(store->objectForKey("x", "a"), value);
    }
    clear();
    EXPECT_EQ(text(), before);
    EXPECT_TRUE(otherFiles().empty());
    ASSERT_EQ(messages.size(), 1U);
    EXPECT_NE(messages[0].find(std::string(": ") + fault + "; changes last for this run only"),
              std::string::npos)
        << messages[0];
    store.reset();  // the last chance, and it is taken
    EXPECT_EQ(text(), "[a]\nx = 2\n");
    EXPECT_EQ(messages.size(), 1U);
  }
}

TEST_F(Store, keepsNamesOutThatNoLineCanHold) {
  put("[a]\nx = 1\n");
  auto store = open();
  store->setObject(1, "x", "a]\nbroken");
  EXPECT_EQ(store->objectForKey("x", "a]\nbroken"), 1);
  store.reset();
  EXPECT_EQ(text(), "[a]\nx = 1\n");
  EXPECT_EQ(messages.size(), 1U);
}

TEST_F(Store, twoProgramsLoseNoneOfTheirChanges) {
  GlobalQueue others{1};
  const auto fill = [this](Queue& itsQueue, const char* bundle) {
    SettingsStore store(file, itsQueue, [](const std::string& message) { FAIL() << message; });
    for (int key = 0; key < 20; ++key) {
      store.setObject(key, std::to_string(key), bundle);
      waitFor(itsQueue);
    }
  };
  std::thread other([&] { fill(others, "b"); });
  fill(queue, "a");
  other.join();
  EXPECT_EQ(SettingsDocument(text()).entries().size(), 40U);
}

}  // namespace
}  // namespace vel::test
