// The time of day, and waiting. All code asks here, so that a test can move time by hand.
#pragma once

#include <condition_variable>
#include <mutex>

namespace vel {

class Clock {
 public:
  Clock() = default;
  virtual ~Clock() = default;
  Clock(const Clock&) = delete;
  Clock& operator=(const Clock&) = delete;

  /// Wall-clock time in seconds since 1970-01-01 00:00 UTC. It can be set back.
  [[nodiscard]] virtual double now() const = 0;

  /// Blocks the calling thread; `seconds` of 0 or less return at once.
  virtual void sleep(double seconds) = 0;
};

/// The machine's own clock.
class SystemClock : public Clock {
 public:
  [[nodiscard]] double now() const override;
  void sleep(double seconds) override;

  /// From now on `sleep` returns at once, on every thread, and so do the sleeps under way.
  void endSleeps();

 private:
  std::mutex mutex_;
  std::condition_variable ending_;
  bool sleepsHaveEnded_ = false;
};

}  // namespace vel
