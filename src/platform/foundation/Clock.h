// The time, and waiting. All code asks here, so that a test can move time by hand.
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

  /// Seconds since 1970-01-01 00:00 UTC.
  [[nodiscard]] virtual double now() const = 0;

  /// Blocks the calling thread; `seconds` of 0 or less return at once.
  virtual void sleep(double seconds) = 0;
};

/// The machine's own clock, as it was set when this was made: it goes on from there, suspended time
/// included, whatever it is set to later, so that differences are times that have passed.
class SystemClock : public Clock {
 public:
  SystemClock();

  [[nodiscard]] double now() const override;
  void sleep(double seconds) override;

  /// From now on `sleep` returns at once, on every thread, and so do the sleeps under way.
  void endSleeps();

 private:
  const double bootTime_;  ///< seconds since 1970
  std::mutex mutex_;
  std::condition_variable ending_;
  bool sleepsHaveEnded_ = false;
};

}  // namespace vel
