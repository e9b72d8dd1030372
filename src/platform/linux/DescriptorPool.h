// A bounded number of files that stay open.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/linux/FileDescriptor.h"

namespace vel {

class DescriptorPool {
 public:
  using Slot = std::int16_t;
  static constexpr Slot kNoSlot = -1;

  explicit DescriptorPool(std::size_t size);

  /// A number that leaves the process enough descriptors for everything else.
  static std::size_t fairSize();

  /// `kNoSlot` when all are taken.
  Slot take();

  /// Closes the slot's file. `kNoSlot` is allowed.
  void release(Slot slot);

  /// The slot's file, closed at first; none for `kNoSlot` and after `shut`.
  FileDescriptor* file(Slot slot);

  /// Closes all files and hands out none any more. False when that has been done before.
  bool shut();

 private:
  std::vector<FileDescriptor> files_;
  std::vector<Slot> free_;
};

}  // namespace vel
