// What the fuzzers share.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

namespace vel::fuzz {

/// Stops the fuzzer at the input that breaks a rule.
inline void require(bool rule) {
  if (!rule) {
    std::abort();
  }
}

/// In memory of its own size, so that the sanitizer sees a reading past the end.
inline std::string textOf(const std::uint8_t* data, std::size_t size) {
  std::string text(reinterpret_cast<const char*>(data), size);
  text.shrink_to_fit();
  return text;
}

}  // namespace vel::fuzz
