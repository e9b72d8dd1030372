// Counts a program's allocations. To be included in one file of it, as it replaces operator new.
#pragma once

#include <atomic>
#include <cstdlib>
#include <new>

namespace vel::test {

inline std::atomic<int> allocations = 0;

}  // namespace vel::test

// Every other form of new that our code uses ends in this one.
void* operator new(std::size_t size) {
  ++vel::test::allocations;
  if (void* memory = std::malloc(size == 0 ? 1 : size)) {
    return memory;
  }
  throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, std::size_t /*size*/) noexcept {
  std::free(memory);
}
