// A private queue that runs its tasks one after the other, in order, on the threads of another
// queue.
#pragma once

#include <memory>

#include "platform/foundation/Queue.h"

namespace vel {

/// The queue may be destroyed while tasks are queued or running: they still run, in order. `target`
/// must outlive them.
class SerialQueue : public Queue {
 public:
  explicit SerialQueue(Queue& target);
  ~SerialQueue() override;

  void async(Task task) override;

 private:
  struct State;
  std::shared_ptr<State> state_;
};

}  // namespace vel
