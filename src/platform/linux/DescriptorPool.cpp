// A bounded number of files that stay open.
#include "platform/linux/DescriptorPool.h"

#include <sys/resource.h>

#include <algorithm>

namespace vel {

DescriptorPool::DescriptorPool(std::size_t size) : files_(size) {
  free_.reserve(size);
  for (std::size_t slot = size; slot > 0; --slot) {
    free_.push_back(static_cast<Slot>(slot - 1));
  }
}

std::size_t DescriptorPool::fairSize() {
  rlimit limit = {};
  if (::getrlimit(RLIMIT_NOFILE, &limit) != 0) {
    return 0;
  }
  return std::min<std::size_t>(256, limit.rlim_cur / 4);
}

DescriptorPool::Slot DescriptorPool::take() {
  if (free_.empty()) {
    return kNoSlot;
  }
  const Slot slot = free_.back();
  free_.pop_back();
  return slot;
}

void DescriptorPool::release(Slot slot) {
  if (FileDescriptor* const released = file(slot)) {
    released->close();
    free_.push_back(slot);
  }
}

FileDescriptor* DescriptorPool::file(Slot slot) {
  return slot == kNoSlot || files_.empty() ? nullptr : &files_[static_cast<std::size_t>(slot)];
}

bool DescriptorPool::shut() {
  const bool wasOpen = !files_.empty();
  files_.clear();
  free_.clear();
  return wasOpen;
}

}  // namespace vel
