// What bench/coverage keeps the machine busy with.
//   coverage_load burn MILLISECONDS    so much CPU time, then it ends
//   coverage_load browser              a launcher, below it a main process with helpers that come
//   and
//                                      go, below that a zygote, below that renderers
//   coverage_load daemon SECONDS       leaves its terminal, has workers, ends by itself; prints its
//   pid
#include <signal.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace {

std::int64_t nanoseconds(clockid_t clock) {
  timespec time = {};
  clock_gettime(clock, &time);
  return std::int64_t{time.tv_sec} * 1'000'000'000 + time.tv_nsec;
}

void burn(std::int64_t milliseconds) {
  const std::int64_t end = nanoseconds(CLOCK_PROCESS_CPUTIME_ID) + milliseconds * 1'000'000;
  while (nanoseconds(CLOCK_PROCESS_CPUTIME_ID) < end) {
  }
}

void rest(long milliseconds) {
  const timespec time = {.tv_sec = 0, .tv_nsec = milliseconds * 1'000'000};
  nanosleep(&time, nullptr);
}

/// A child that ends with this process, however that ends.
template <typename Live>
void start(const char* name, Live live) {
  const pid_t parent = getpid();
  if (fork() == 0) {
    prctl(PR_SET_PDEATHSIG, SIGKILL);
    prctl(PR_SET_NAME, name);
    if (getppid() == parent) {
      live();
    }
    _exit(0);
  }
}

[[noreturn]] void waitForGood() {
  while (wait(nullptr) > 0) {
  }
  for (;;) {
    pause();
  }
}

[[noreturn]] void burnInBursts(long at, long pause) {
  for (;;) {
    burn(at);
    rest(pause);
  }
}

void startRenderers() {
  start("renderer", [] { burnInBursts(200, 100); });
  start("renderer", [] { burnInBursts(70, 90); });
  start("renderer", [] { burnInBursts(5, 15); });
}

[[noreturn]] void haveHelpers() {
  for (;;) {
    start("helper", [] { burn(40); });
    rest(200);
    while (waitpid(-1, nullptr, WNOHANG) > 0) {
    }
  }
}

[[noreturn]] void browser() {
  prctl(PR_SET_NAME, "browser");
  start("browser-main", [] {
    start("zygote", [] {
      startRenderers();
      waitForGood();
    });
    haveHelpers();
  });
  waitForGood();
}

void daemon(unsigned seconds) {
  if (fork() != 0) {
    return;
  }
  setsid();
  if (const pid_t pid = fork()) {
    std::printf("%d\n", pid);
    return;
  }
  prctl(PR_SET_NAME, "workd");
  alarm(seconds);
  start("worker", [] { burnInBursts(100, 30); });
  start("worker", [] { burnInBursts(20, 20); });
  waitForGood();
}

}  // namespace

int main(int argc, char** argv) {
  const std::string_view what = argc > 1 ? argv[1] : "";
  const int number = argc > 2 ? std::atoi(argv[2]) : 0;
  if (what == "burn" && number > 0) {
    burn(number);
  } else if (what == "browser") {
    browser();
  } else if (what == "daemon" && number > 0) {
    daemon(static_cast<unsigned>(number));
  } else {
    std::fprintf(stderr, "usage: coverage_load burn MILLISECONDS | browser | daemon SECONDS\n");
    return 2;
  }
  return 0;
}
