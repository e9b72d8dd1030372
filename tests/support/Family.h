// Processes that have nothing to do with the test any more, as those that a desktop starts.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <functional>
#include <string>
#include <vector>

#include "platform/linux/FileDescriptor.h"

namespace vel::test {

/// A process without a parent that leads a session, and its children, which sleep. All end with
/// their owner at the latest.
class Family {
 public:
  explicit Family(const char* name, int children = 0)
      : Family(
            [this] {
              while (const char generations = nextQuestion()) {
                startChild(generations);
              }
            },
            name) {
    for (int i = 0; i < children; ++i) {
      startAnother();
    }
  }

  /// The first process does just that, under that name from the first moment that it is known.
  explicit Family(const std::function<void()>& work, const char* name = nullptr) {
    for (auto* pipe : {&life_, &commands_, &pids_}) {
      EXPECT_EQ(::pipe2(pipe->data(), O_CLOEXEC), 0);
    }
    const pid_t between = ::fork();
    if (between == 0) {
      if (::fork() == 0) {
        ::setsid();
        ::close(life_[1]);
        ::close(commands_[1]);
        // Its parent has gone first.
        while (::getppid() != 1) {
          ::usleep(100);
        }
        if (name != nullptr) {
          ::prctl(PR_SET_NAME, name);
        }
        tellPid();
        work();
      }
      ::_exit(0);
    }
    ::waitpid(between, nullptr, 0);
    nextPid();
  }

  ~Family() {
    ::kill(-processes_.front(), SIGKILL);
    for (const auto& pipe : {life_, commands_, pids_}) {
      ::close(pipe[0]);
      ::close(pipe[1]);
    }
    for (std::size_t i = 0; i < processes_.size(); ++i) {
      EXPECT_TRUE(hasEnded(i));
      ::close(descriptors_[i]);
    }
  }
  Family(const Family&) = delete;
  Family& operator=(const Family&) = delete;

  /// The first one first.
  [[nodiscard]] const std::vector<pid_t>& processes() const { return processes_; }
  [[nodiscard]] pid_t pid() const { return processes_.front(); }

  /// A child, its child, and so on.
  void startAnother(char generations = 1) {
    ask(generations);
    for (; generations > 0; --generations) {
      nextPid();
    }
  }
  void ask(char generations = 1) { EXPECT_EQ(::write(commands_[1], &generations, 1), 1); }

  [[nodiscard]] bool lives(std::size_t process) const { return !isOver(process, 0); }
  /// Waits for it, as long as a busy machine may take.
  [[nodiscard]] bool hasEnded(std::size_t process) const { return isOver(process, 20'000); }

  /// To be called by the first process.
  void startChild(char generations) {
    if (::fork() == 0) {
      ::prctl(PR_SET_NAME, "child");
      tellPid();
      if (generations > 1) {
        startChild(static_cast<char>(generations - 1));
      }
      char nothing = 0;
      (void)!::read(life_[0], &nothing, 1);
      ::_exit(0);
    }
  }
  /// Likewise: waits for `ask`, 0 at the end of the test.
  [[nodiscard]] char nextQuestion() const {
    char generations = 0;
    return ::read(commands_[0], &generations, 1) == 1 ? generations : '\0';
  }

 private:
  void nextPid() {
    pid_t pid = 0;
    EXPECT_EQ(::read(pids_[0], &pid, sizeof pid), ssize_t(sizeof pid));
    processes_.push_back(pid);
    descriptors_.push_back(static_cast<int>(::syscall(SYS_pidfd_open, pid, 0U)));
  }

  void tellPid() const {
    const pid_t pid = ::getpid();
    (void)!::write(pids_[1], &pid, sizeof pid);
  }

  [[nodiscard]] bool isOver(std::size_t process, int milliseconds) const {
    pollfd end{descriptors_.at(process), POLLIN, 0};
    return ::poll(&end, 1, milliseconds) == 1;
  }

  std::array<int, 2> life_{};
  std::array<int, 2> commands_{};
  std::array<int, 2> pids_{};
  std::vector<pid_t> processes_;
  std::vector<int> descriptors_;
};

}  // namespace vel::test
