// Work handed to a later moment or to another thread.
#pragma once

#include <functional>

namespace vel {

class Queue {
 public:
  using Task = std::function<void()>;

  Queue() = default;
  virtual ~Queue() = default;
  Queue(const Queue&) = delete;
  Queue& operator=(const Queue&) = delete;

  /// Returns at once; never runs the task before it returns. May be called from any thread, and
  /// from inside a task. A task must not throw.
  virtual void async(Task task) = 0;
};

}  // namespace vel
