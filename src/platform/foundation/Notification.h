// What a post on the notification centre carries.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vel {

struct Notification {
  std::string_view name;
  /// An integer or nothing; read as an integer, nothing is 0.
  std::optional<std::int64_t> object;

  [[nodiscard]] std::int64_t integerValue() const { return object.value_or(0); }
};

}  // namespace vel
