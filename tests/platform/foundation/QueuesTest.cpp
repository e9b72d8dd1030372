// The three queues: what runs when, in which order, and beside what.
#include <gtest/gtest.h>

#include <atomic>
#include <barrier>
#include <string>

#include "platform/foundation/GlobalQueue.h"
#include "platform/foundation/MainQueue.h"
#include "platform/foundation/SerialQueue.h"

namespace vel::test {

TEST(Queues, RunWhatWasQueuedBeforeAndThenGiveWay) {
  int wakes = 0;
  MainQueue target([&wakes] { ++wakes; });
  SerialQueue serial(target);
  for (Queue* queue : {static_cast<Queue*>(&target), static_cast<Queue*>(&serial)}) {
    std::string ran;
    wakes = 0;
    queue->async([&] {
      ran += 'a';
      queue->async([&ran] { ran += 'c'; });
    });
    queue->async([&ran] { ran += 'b'; });
    target.drain();
    EXPECT_EQ(ran, "ab");
    EXPECT_EQ(wakes, 2);
    target.drain();
    EXPECT_EQ(ran, "abc");
  }
}

TEST(GlobalQueue, RunsAsManyTasksAtOnceAsItMay) {
  std::atomic<int> running = 0;
  std::atomic<int> ran = 0;
  std::barrier allRun(3);
  GlobalQueue queue(3);
  for (int i = 0; i < 30; ++i) {
    queue.async([&] {
      EXPECT_LE(++running, 3);
      allRun.arrive_and_wait();  // Hangs unless three run at once.
      --running;
      allRun.arrive_and_wait();
      queue.async([&] { queue.async([&ran] { ++ran; }); });
    });
  }
  queue.waitUntilIdle();
  EXPECT_EQ(ran, 30);
}

TEST(SerialQueue, RunsInOrderOneAtATimeAndOutlivesItsHandle) {
  int ran = 0;  // Not atomic: two tasks at once would race.
  {
    GlobalQueue target;
    SerialQueue queue(target);
    for (int i = 0; i < 2000; ++i) {
      queue.async([&ran, i] { EXPECT_EQ(ran++, i); });
    }
  }
  EXPECT_EQ(ran, 2000);
}

}  // namespace vel::test
