// A small hash table with pids for keys, whose storage is kept from reading to reading.
#pragma once

#include <bit>
#include <cassert>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

namespace vel {

/// Open addressing with linear probing. It is emptied and filled anew for every reading, so nothing
/// is ever removed, and it is sized for what it is to hold rather than for what it has ever held.
template <typename Value>
class PidMap {
 public:
  PidMap() { clear(0); }

  /// Empties the map and makes room for `atMost` pids.
  void clear(std::size_t atMost) {
    // At most two thirds full; two slots at least, so that the hash has a bit to keep.
    slots_.assign(std::bit_ceil(atMost + atMost / 2 + 2), Slot{});
    unusedBits_ = 32 - std::countr_zero(slots_.size());
    room_ = atMost;
  }

  [[nodiscard]] const Value* find(std::int32_t pid) const {
    const Slot& slot = slots_[slotOf(pid)];
    return slot.pid == kNoPid ? nullptr : &slot.value;
  }

  /// The value of `pid`, which is `initial` if the map has not had it. More pids than the map has
  /// room for are a programming error.
  Value findOrAdd(std::int32_t pid, Value initial) {
    Slot& slot = slots_[slotOf(pid)];
    if (slot.pid == kNoPid) {
      assert(room_ != 0);
      --room_;
      slot = {.pid = pid, .value = initial};
    }
    return slot.value;
  }

 private:
  static constexpr std::int32_t kNoPid = std::numeric_limits<std::int32_t>::min();

  struct Slot {
    std::int32_t pid = kNoPid;
    Value value{};
  };

  /// Where `pid` is, or would be put.
  [[nodiscard]] std::size_t slotOf(std::int32_t pid) const {
    // Fibonacci hashing: multiplied by 2^32 over the golden ratio, neighbours land far apart.
    std::size_t slot = (static_cast<std::uint32_t>(pid) * 0x9E3779B1U) >> unusedBits_;
    while (slots_[slot].pid != pid && slots_[slot].pid != kNoPid) {
      slot = (slot + 1) & (slots_.size() - 1);
    }
    return slot;
  }

  std::vector<Slot> slots_;  ///< a power of two of them, one free at least
  int unusedBits_ = 0;       ///< of a hash's 32, those that the slot's number does not need
  std::size_t room_ = 0;
};

}  // namespace vel
