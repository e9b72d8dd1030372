// The concurrent queue of default priority: its tasks run on a few threads of their own, in no
// promised order.
#pragma once

#include <condition_variable>
#include <cstddef>
#include <deque>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/foundation/Queue.h"

namespace vel {

/// Starts no thread before the first task and lets idle threads sleep without waking.
class GlobalQueue : public Queue {
 public:
  explicit GlobalQueue(std::size_t maximumThreads = 4);

  /// Runs every task that is still queued, then ends the threads: a write that was handed over is
  /// not lost.
  ~GlobalQueue() override;

  void async(Task task) override;

  /// Waits until no task is queued or running, those included that tasks queue in turn. Not to
  /// be called from a task.
  void waitUntilIdle();

 private:
  void startThread();  ///< under the lock
  void work();
  void runNext(std::unique_lock<std::mutex>& lock);

  const std::size_t maximumThreads_;
  std::mutex mutex_;
  std::condition_variable wake_;
  std::condition_variable allIdle_;
  std::deque<Task> tasks_;
  std::vector<std::thread> threads_;
  std::size_t idle_ = 0;
  bool ending_ = false;
};

}  // namespace vel
