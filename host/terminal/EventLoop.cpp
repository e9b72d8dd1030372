#include "host/terminal/EventLoop.h"

#include <cerrno>
#include <cstddef>
#include <system_error>
#include <utility>

namespace vel {

void EventLoop::watch(int descriptor, short events, Handler handler) {
  descriptors_.push_back({descriptor, events, 0});
  handlers_.push_back(std::move(handler));
}

void EventLoop::run() {
  while (!ending_) {
    if (poll(descriptors_.data(), descriptors_.size(), -1) >= 0) {
      serve();
    } else if (errno != EINTR) {
      throw std::system_error(errno, std::generic_category(), "poll");
    }
  }
}

void EventLoop::serve() {
  for (std::size_t i = 0; i < descriptors_.size() && !ending_; ++i) {
    if (descriptors_[i].revents != 0) {
      handlers_[i](descriptors_[i].revents);
    }
  }
}

}  // namespace vel
