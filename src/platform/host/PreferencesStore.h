// The host's keeper of settings.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vel {

/// Every value is an integer; each bundle has a name space of its own, under its identifier.
class PreferencesStore {
 public:
  PreferencesStore() = default;
  virtual ~PreferencesStore() = default;
  PreferencesStore(const PreferencesStore&) = delete;
  PreferencesStore& operator=(const PreferencesStore&) = delete;

  /// Nothing when the key is absent.
  [[nodiscard]] virtual std::optional<std::int64_t> objectForKey(
      std::string_view key, std::string_view bundleIdentifier) const = 0;

  virtual void setObject(std::int64_t value, std::string_view key,
                         std::string_view bundleIdentifier) = 0;
};

}  // namespace vel
