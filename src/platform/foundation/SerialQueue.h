// A private queue that runs its tasks one after the other, in order, on the threads of another
// queue.
#pragma once

#include <memory>
#include <string>

#include "platform/foundation/Queue.h"

namespace vel {

/// The queue may be destroyed while tasks are queued or running: they still run, in order. `target`
/// must outlive them.
class SerialQueue : public Queue {
 public:
  explicit SerialQueue(Queue& target, std::string label = {});
  ~SerialQueue() override;

  void async(Task task) override;

  /// For whoever looks at the program.
  [[nodiscard]] const std::string& label() const { return label_; }

 private:
  struct State;
  std::string label_;
  std::shared_ptr<State> state_;
};

}  // namespace vel
