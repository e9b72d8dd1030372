// The queue whose tasks run on the main thread, in order, whenever the host's main loop comes round
// to them.
#pragma once

#include <functional>
#include <mutex>
#include <vector>

#include "platform/foundation/Queue.h"

namespace vel {

class MainQueue : public Queue {
 public:
  /// `wake` is called, on the thread that queues, when the queue stops being empty: it makes the
  /// host's main loop call `drain` soon.
  explicit MainQueue(std::function<void()> wake = {});

  void async(Task task) override;

  /// Runs, on the calling thread, the tasks that were queued before the call; what they queue in
  /// turn waits for the next call (and wakes the loop for it).
  void drain();

 private:
  std::function<void()> wake_;
  std::mutex mutex_;
  std::vector<Task> tasks_;
};

}  // namespace vel
