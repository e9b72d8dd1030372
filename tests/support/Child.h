// A child process that does what the test says, when it says so.
#pragma once

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace vel::test {

/// Does one step after another and stops after each; then it sleeps. It is killed, and waited for,
/// with its owner.
class Child {
 public:
  /// The first step has been done when the constructor returns.
  template <typename... Steps>
  explicit Child(Steps... steps) : pid_(::fork()) {
    if (pid_ == 0) {
      ::prctl(PR_SET_PDEATHSIG, SIGKILL);
      (..., (steps(), ::raise(SIGSTOP)));
      for (;;) {
        ::pause();
      }
    }
    waitUntil(WSTOPPED);
  }
  /// Sleeps under that name.
  explicit Child(const char* name) : Child([name] { ::prctl(PR_SET_NAME, name); }) {
    ::kill(pid_, SIGCONT);
  }
  ~Child() {
    if (!reaped_) {
      ::kill(pid_, SIGKILL);
      reap();
    }
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  [[nodiscard]] bool isAlive() const { return ::waitpid(pid_, nullptr, WNOHANG) == 0; }

  /// Has the next step done.
  void next() const {
    ::kill(pid_, SIGCONT);
    waitUntil(WSTOPPED);
  }

  /// Leaves a zombie.
  void kill() const {
    ::kill(pid_, SIGKILL);
    waitUntil(WEXITED | WNOWAIT);
  }

  /// Waits for its end: the signal that has ended it, or -1.
  int reap() {
    int status = 0;
    EXPECT_EQ(::waitpid(pid_, &status, 0), pid_);
    reaped_ = true;
    return WIFSIGNALED(status) ? WTERMSIG(status) : -1;
  }

 private:
  void waitUntil(int what) const {
    siginfo_t info = {};
    EXPECT_EQ(::waitid(P_PID, static_cast<id_t>(pid_), &info, what), 0);
  }

  pid_t pid_;
  bool reaped_ = false;
};

}  // namespace vel::test
