// The main thread's queue: a list that whoever runs the main loop empties.
#include "platform/foundation/MainQueue.h"

#include <utility>

namespace vel {

MainQueue::MainQueue(std::function<void()> wake) : wake_(std::move(wake)) {}

void MainQueue::async(Task task) {
  bool wasEmpty = false;
  {
    const std::lock_guard lock(mutex_);
    wasEmpty = tasks_.empty();
    tasks_.push_back(std::move(task));
  }
  if (wasEmpty && wake_) {
    wake_();
  }
}

void MainQueue::drain() {
  std::vector<Task> batch;
  {
    const std::lock_guard lock(mutex_);
    batch.swap(tasks_);
  }
  for (const Task& task : batch) {
    task();
  }
}

}  // namespace vel
