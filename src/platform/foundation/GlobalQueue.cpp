// A pool of threads that grows only while tasks would have to wait.
#include "platform/foundation/GlobalQueue.h"

#include <algorithm>
#include <system_error>
#include <utility>

namespace vel {

GlobalQueue::GlobalQueue(std::size_t maximumThreads)
    : maximumThreads_(std::max<std::size_t>(maximumThreads, 1)) {}

GlobalQueue::~GlobalQueue() {
  {
    const std::lock_guard lock(mutex_);
    ending_ = true;
  }
  wake_.notify_all();
  for (std::thread& thread : threads_) {
    thread.join();
  }
  // Finds tasks only if the system never let a thread start.
  work();
}

void GlobalQueue::async(Task task) {
  {
    const std::lock_guard lock(mutex_);
    tasks_.push_back(std::move(task));
    // A thread that has been woken counts as idle until it has taken its task, hence the comparison
    // with all that is queued. While the queue ends, the thread of the calling task comes round.
    if (tasks_.size() > idle_ && threads_.size() < maximumThreads_ && !ending_) {
      startThread();
    }
  }
  wake_.notify_one();
}

void GlobalQueue::startThread() {
  try {
    threads_.emplace_back([this] { work(); });
  } catch (const std::system_error&) {
    // The threads that there are do the work; without any, the next task tries again, and the
    // destructor runs what is left.
  }
}

void GlobalQueue::waitUntilIdle() {
  std::unique_lock lock(mutex_);
  while (threads_.empty() && !tasks_.empty()) {
    runNext(lock);
  }
  allIdle_.wait(lock, [this] { return tasks_.empty() && idle_ == threads_.size(); });
}

void GlobalQueue::work() {
  std::unique_lock lock(mutex_);
  for (;;) {
    ++idle_;
    if (tasks_.empty() && idle_ == threads_.size()) {
      allIdle_.notify_all();
    }
    wake_.wait(lock, [this] { return ending_ || !tasks_.empty(); });
    --idle_;
    if (tasks_.empty()) {
      return;
    }
    runNext(lock);
  }
}

void GlobalQueue::runNext(std::unique_lock<std::mutex>& lock) {
  Task task = std::move(tasks_.front());
  tasks_.pop_front();
  lock.unlock();
  task();
  task = nullptr;  // Destroys what it holds, which may queue again, before the lock is back.
  lock.lock();
}

}  // namespace vel
