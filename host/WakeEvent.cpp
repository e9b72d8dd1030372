#include "host/WakeEvent.h"

#include <sys/eventfd.h>

namespace vel {

WakeEvent::WakeEvent() : event_(eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC), "eventfd") {}

void WakeEvent::wake() {
  eventfd_write(event_.get(), 1);
}

void WakeEvent::acknowledge() {
  eventfd_t wakes = 0;
  eventfd_read(event_.get(), &wakes);
}

}  // namespace vel
