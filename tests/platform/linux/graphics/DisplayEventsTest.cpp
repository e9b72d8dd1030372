// Word of changed displays, as udev sends it, in a network of the test's own.
#include <gtest/gtest.h>
#include <sched.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <semaphore>
#include <string>
#include <system_error>
#include <thread>

#include "platform/linux/graphics/LinuxDisplays.h"
#include "support/DisplayEvent.h"

namespace vel::test {
namespace {

/// In a container without udev libudev does not listen unless it finds this file.
class UdevControl {
 public:
  UdevControl() {
    std::error_code error;
    if (!std::filesystem::exists(path_, error)) {
      std::filesystem::create_directories(path_.parent_path(), error);
      made_ = static_cast<bool>(std::ofstream(path_));
    }
  }
  ~UdevControl() {
    std::error_code error;
    if (made_) {
      std::filesystem::remove(path_, error);
    }
  }
  UdevControl(const UdevControl&) = delete;
  UdevControl& operator=(const UdevControl&) = delete;

 private:
  std::filesystem::path path_ = "/run/udev/control";
  bool made_ = false;
};

/// A user needs a user namespace to be the administrator of.
bool enterOwnNetwork() {
  static const bool entered = [] {
    const std::string self = "0 " + std::to_string(geteuid()) + " 1";
    return unshare(CLONE_NEWNET) == 0 ||
           (unshare(CLONE_NEWUSER | CLONE_NEWNET) == 0 &&
            static_cast<bool>(std::ofstream("/proc/self/uid_map") << self << std::flush));
  }();
  return entered;
}

bool hasThread() {
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string name;
    if (std::ifstream(task.path() / "comm") >> name && name == "displays") {
      return true;
    }
  }
  return false;
}

/// What hears of events: each raises it by one.
using Listener = std::counting_semaphore<>;

void hear(std::uint32_t /*display*/, std::uint32_t flags, void* listener) {
  static_cast<Listener*>(listener)->release(flags == Displays::kSetModeFlag ? 1 : 0);
}

bool hasHeard(Listener& listener) {
  return listener.try_acquire_for(std::chrono::seconds(30));
}

class DisplayEvent : public testing::Test {
 protected:
  void SetUp() override { ASSERT_TRUE(enterOwnNetwork()) << "no network namespace to be had"; }

  UdevControl control_;
  LinuxDisplays displays_{
      "/nonexistent",
      {},
      {.apart = std::chrono::milliseconds(0),
       .echoes = {std::chrono::hours(1), std::chrono::hours(1), std::chrono::hours(1)}}};
  Listener first_{0};
  Listener second_{0};
};

TEST_F(DisplayEvent, ReachesEachCallbackUntilItIsRemoved) {
  displays_.registerReconfigurationCallback(hear, &first_);
  displays_.registerReconfigurationCallback(hear, &first_);
  displays_.registerReconfigurationCallback(hear, &second_);
  ASSERT_TRUE(sendDisplayEvent());
  EXPECT_TRUE(hasHeard(first_) && hasHeard(second_));
  displays_.removeReconfigurationCallback(hear, &first_);
  ASSERT_TRUE(sendDisplayEvent() && sendDisplayEvent());
  EXPECT_TRUE(hasHeard(second_) && hasHeard(second_));
  EXPECT_FALSE(first_.try_acquire());
  EXPECT_TRUE(hasThread());
  displays_.removeReconfigurationCallback(hear, &second_);
  EXPECT_FALSE(hasThread());
}

TEST_F(DisplayEvent, HasEchoesUntilTheNext) {
  DisplayEventSource source({.apart = std::chrono::milliseconds(0),
                             .echoes = {std::chrono::milliseconds(1), std::chrono::milliseconds(1),
                                        std::chrono::hours(1)}});
  ASSERT_TRUE(source.isReceiving());
  for (int event = 0; event < 2; ++event) {
    ASSERT_TRUE(sendDisplayEvent());
    EXPECT_TRUE(source.wait() && source.wait() && source.wait());
  }
  source.end();
  EXPECT_FALSE(source.wait());
}

TEST_F(DisplayEvent, SwallowsWhatComesTooSoon) {
  DisplayEventSource source(
      {.apart = std::chrono::hours(1),
       .echoes = {std::chrono::hours(1), std::chrono::hours(1), std::chrono::hours(1)}});
  ASSERT_TRUE(sendDisplayEvent() && sendDisplayEvent());
  EXPECT_TRUE(source.wait());
  std::thread end([&source] { source.end(); });
  EXPECT_FALSE(source.wait());
  end.join();
}

TEST_F(DisplayEvent, CanBeGivenUpDuringACall) {
  struct Call {
    LinuxDisplays& displays;
    Listener& late;
    std::atomic<int> step = 0;
  } call{displays_, first_};
  const auto slow = [](std::uint32_t, std::uint32_t, void* data) {
    auto& self = *static_cast<Call*>(data);
    self.step = 1;
    self.step.notify_all();
    self.step.wait(1);
    for (int i = 0; i < 100; ++i) {
      self.displays.registerReconfigurationCallback(hear, &self.late);
      std::this_thread::yield();
    }
    self.step = 3;
  };
  displays_.registerReconfigurationCallback(slow, &call);
  displays_.registerReconfigurationCallback(hear, &second_);
  ASSERT_TRUE(sendDisplayEvent());
  call.step.wait(0);
  displays_.removeReconfigurationCallback(hear, &second_);
  call.step = 2;
  call.step.notify_all();
  displays_.removeReconfigurationCallback(slow, &call);
  EXPECT_EQ(call.step, 3);
  ASSERT_TRUE(sendDisplayEvent());
  EXPECT_TRUE(hasHeard(first_));
  EXPECT_FALSE(second_.try_acquire());
}

}  // namespace
}  // namespace vel::test
