// Calls those who want to know when a display may have come to be driven in another way.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <thread>
#include <utility>
#include <vector>

#include "platform/graphics/Displays.h"
#include "platform/linux/graphics/DisplayEventSource.h"

namespace vel {

/// As `Displays` promises it. There is a thread only while there is a callback, and it wakes for
/// events alone; without udev no event comes.
class DisplayEvents {
 public:
  explicit DisplayEvents(const DisplayEventSource::Timing& timing) : timing_(timing) {}
  ~DisplayEvents();
  DisplayEvents(const DisplayEvents&) = delete;
  DisplayEvents& operator=(const DisplayEvents&) = delete;

  void add(Displays::ReconfigurationCallback callback, void* userInfo);
  void remove(Displays::ReconfigurationCallback callback, void* userInfo);

 private:
  using Registration = std::pair<Displays::ReconfigurationCallback, void*>;

  /// A thread that calls for each event of its source.
  struct Watch {
    explicit Watch(const DisplayEventSource::Timing& timing) : source(timing) {}
    ~Watch();
    Watch(const Watch&) = delete;
    Watch& operator=(const Watch&) = delete;

    DisplayEventSource source;
    std::thread thread;
  };

  void startWatch();
  void run(Watch& watch);
  void callAll(const Watch& watch);
  [[nodiscard]] bool isRegistered(const Registration& registration) const;

  const DisplayEventSource::Timing timing_;
  /// Never held during a call, lest a callback waits for a lock whose holder registers.
  std::mutex mutex_;
  std::condition_variable returned_;
  std::vector<Registration> registrations_;
  /// Calls under way. More than one while a watch ends that has been replaced already.
  std::vector<Registration> calls_;
  /// Null without registrations or udev.
  std::unique_ptr<Watch> watch_;
};

}  // namespace vel
