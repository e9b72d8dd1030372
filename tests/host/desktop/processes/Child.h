// A child process under a name of one's choice, which waits to be ended.
#pragma once

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <string>

#include "host/desktop/kit/BootTime.h"

namespace vel::test {

class Child {
 public:
  explicit Child(std::string name) : name_(std::move(name)) {
    std::array<int, 2> named{};
    EXPECT_EQ(pipe(named.data()), 0);
    pid_ = fork();
    if (pid_ == 0) {
      prctl(PR_SET_PDEATHSIG, SIGKILL);
      prctl(PR_SET_NAME, name_.c_str());
      close(named[0]);
      close(named[1]);
      for (;;) {
        pause();
      }
    }
    close(named[1]);
    char none = 0;
    EXPECT_EQ(read(named[0], &none, 1), 0);
    close(named[0]);
  }
  ~Child() {
    kill(pid_, SIGKILL);
    reap();
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  [[nodiscard]] pid_t pid() const { return pid_; }
  [[nodiscard]] const std::string& name() const { return name_; }
  [[nodiscard]] bool isAlive() const { return waitpid(pid_, nullptr, WNOHANG) == 0; }

  /// Has it end, and leaves it a zombie.
  void end() const {
    kill(pid_, SIGKILL);
    siginfo_t end = {};
    EXPECT_EQ(waitid(P_PID, id_t(pid_), &end, WEXITED | WNOWAIT), 0);
  }

  /// Waits for its end: the signal that has ended it, or -1.
  int reap() {
    int status = 0;
    const bool isReaped = reaped_ || waitpid(pid_, &status, 0) != pid_;
    reaped_ = true;
    return !isReaped && WIFSIGNALED(status) ? WTERMSIG(status) : -1;
  }

 private:
  std::string name_;
  pid_t pid_ = 0;
  bool reaped_ = false;
};

/// A moment after everything that has been started so far.
inline std::chrono::nanoseconds afterAll() {
  return bootTime() + std::chrono::seconds(1);
}

}  // namespace vel::test
