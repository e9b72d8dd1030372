// Order on top of a queue that promises none: at most one turn on the target at any time.
#include "platform/foundation/SerialQueue.h"

#include <mutex>
#include <utility>
#include <vector>

namespace vel {

struct SerialQueue::State : std::enable_shared_from_this<State> {
  explicit State(Queue& queue) : target(queue) {}

  void async(Task task);
  void takeTurn();
  void queueTurn() {
    target.async([self = shared_from_this()] { self->takeTurn(); });
  }

  Queue& target;
  std::mutex mutex;
  std::vector<Task> tasks;
  bool turnQueued = false;  ///< or under way
};

void SerialQueue::State::async(Task task) {
  {
    const std::lock_guard lock(mutex);
    tasks.push_back(std::move(task));
    if (std::exchange(turnQueued, true)) {
      return;
    }
  }
  queueTurn();
}

/// Runs what is queued by now. What comes meanwhile takes another turn, so that the target's other
/// tasks are not kept waiting.
void SerialQueue::State::takeTurn() {
  std::vector<Task> batch;
  {
    const std::lock_guard lock(mutex);
    batch.swap(tasks);
  }
  for (Task& task : batch) {
    task();
    task = nullptr;
  }
  {
    const std::lock_guard lock(mutex);
    turnQueued = !tasks.empty();
    if (!turnQueued) {
      return;
    }
  }
  queueTurn();
}

SerialQueue::SerialQueue(Queue& target, std::string label)
    : label_(std::move(label)), state_(std::make_shared<State>(target)) {}

SerialQueue::~SerialQueue() = default;

void SerialQueue::async(Task task) {
  state_->async(std::move(task));
}

}  // namespace vel
