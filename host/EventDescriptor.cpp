#include "host/EventDescriptor.h"

#include <unistd.h>

#include <cerrno>
#include <system_error>

namespace vel {

EventDescriptor::EventDescriptor(int descriptor, const char* call) : descriptor_(descriptor) {
  if (descriptor == -1) {
    throw std::system_error(errno, std::generic_category(), call);
  }
}

EventDescriptor::~EventDescriptor() {
  close(descriptor_);
}

}  // namespace vel
