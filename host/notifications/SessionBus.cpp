#include "host/notifications/SessionBus.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <system_error>

namespace vel {
namespace {

using std::chrono::milliseconds;
using std::chrono::steady_clock;
using namespace std::chrono_literals;

sd_bus* open() {
  sd_bus* bus = nullptr;
  const int result = sd_bus_open_user(&bus);
  if (result == -ENOMEDIUM) {
    throw std::runtime_error(
        "no session bus, neither DBUS_SESSION_BUS_ADDRESS nor XDG_RUNTIME_DIR is set");
  }
  SessionBus::require(result);
  return bus;
}

std::runtime_error noAnswer(milliseconds limit) {
  return std::runtime_error("no answer within " + std::to_string(limit.count()) + " ms");
}

int keepReply(sd_bus_message* reply, void* keeper, sd_bus_error* /*error*/) {
  static_cast<SessionBus::Message*>(keeper)->reset(sd_bus_message_ref(reply));
  return 0;
}

}  // namespace

SessionBus::SessionBus(milliseconds limit, int cancel)
    : limit_(limit), cancel_(cancel), bus_(open()) {}

// sd_bus_call would wait without a limit of ours for the connection to come about, and for its
// reply without an end.
SessionBus::Message SessionBus::call(sd_bus_message* request) {
  const Deadline deadline = steady_clock::now() + limit_;
  Message reply;
  sd_bus_slot* slot = nullptr;
  require(sd_bus_call_async(bus_.get(), &slot, request, keepReply, &reply, UINT64_MAX));
  const std::unique_ptr<sd_bus_slot, Unreference> pending(slot);
  while (!reply) {
    if (require(sd_bus_process(bus_.get(), nullptr)) == 0) {
      wait(deadline);
    } else if (!reply && steady_clock::now() >= deadline) {
      // Whoever floods the connection does not prolong the call.
      throw noAnswer(limit_);
    }
  }
  if (const sd_bus_error* error = sd_bus_message_get_error(reply.get())) {
    throw std::runtime_error(error->message != nullptr ? error->message : error->name);
  }
  return reply;
}

void SessionBus::wait(Deadline deadline) {
  const auto left = std::chrono::ceil<milliseconds>(deadline - steady_clock::now());
  const auto events = static_cast<short>(require(sd_bus_get_events(bus_.get())));
  std::array<pollfd, 2> files{
      {{require(sd_bus_get_fd(bus_.get())), events, 0}, {cancel_, POLLIN, 0}}};
  const int ready = poll(files.data(), files.size(), static_cast<int>(std::max(left, 0ms).count()));
  if (files[1].revents != 0) {
    throw Cancelled();
  }
  if (ready == 0) {
    throw noAnswer(limit_);
  }
}

int SessionBus::require(int result) {
  if (result < 0) {
    throw std::system_error(-result, std::generic_category(), "session bus");
  }
  return result;
}

}  // namespace vel
