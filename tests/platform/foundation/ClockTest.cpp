// Waiting that can be cut short.
#include "platform/foundation/Clock.h"

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace vel::test {
namespace {

TEST(SystemClock, EndsTheSleepsUnderWayAndThoseToCome) {
  SystemClock clock;
  // The first of so many are asleep by the time that the last one starts.
  std::array<std::jthread, 20> sleepers;
  for (std::jthread& sleeper : sleepers) {
    sleeper = std::jthread([&clock] { clock.sleep(3600.0); });
  }
  clock.endSleeps();
  clock.sleep(3600.0);
}

}  // namespace
}  // namespace vel::test
