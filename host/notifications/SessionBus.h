// A connection to the user's session bus whose calls neither last too long nor outlive their use.
#pragma once

#include <systemd/sd-bus.h>

#include <chrono>
#include <memory>

namespace vel {

/// Failures are std::runtime_error that say what is wrong. For one thread at a time.
class SessionBus {
 public:
  /// Thrown from a call once the descriptor for that has become readable.
  struct Cancelled {};

  struct Unreference {
    void operator()(sd_bus* bus) const { sd_bus_close_unref(bus); }
    void operator()(sd_bus_slot* slot) const { sd_bus_slot_unref(slot); }
    void operator()(sd_bus_message* message) const { sd_bus_message_unref(message); }
  };
  using Message = std::unique_ptr<sd_bus_message, Unreference>;

  /// Waits for nothing: what is wrong with the bus may show only in the first call. `limit` is for
  /// each call; `cancel` outlives the connection.
  SessionBus(std::chrono::milliseconds limit, int cancel);

  /// The reply to a method call, which is never an error.
  Message call(sd_bus_message* request);

  [[nodiscard]] sd_bus* get() const { return bus_.get(); }

  /// What a function of sd-bus returned, which is an error if negative.
  static int require(int result);

 private:
  using Deadline = std::chrono::steady_clock::time_point;

  void wait(Deadline deadline);

  const std::chrono::milliseconds limit_;
  const int cancel_;
  std::unique_ptr<sd_bus, Unreference> bus_;
};

}  // namespace vel
