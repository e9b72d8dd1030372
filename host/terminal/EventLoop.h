// Waits for files to become ready and calls who waits for them; nothing else wakes it.
#pragma once

#include <poll.h>

#include <functional>
#include <vector>

namespace vel {

class EventLoop {
 public:
  /// Is given what poll reported: `events` and POLLERR, POLLHUP and POLLNVAL.
  using Handler = std::function<void(short events)>;

  /// Those watched first are served first. With no `events` only trouble is reported.
  void watch(int descriptor, short events, Handler handler);

  /// Until `end`, which a handler calls. Throws std::system_error, and what a handler throws.
  void run();
  void end() { ending_ = true; }
  [[nodiscard]] bool isEnding() const { return ending_; }

 private:
  void serve();

  std::vector<pollfd> descriptors_;
  std::vector<Handler> handlers_;
  bool ending_ = false;
};

}  // namespace vel
