// The host's own settings, in the store's section of the host.
#pragma once

#include <cstdint>

#include "host/Appearance.h"
#include "platform/host/PreferencesStore.h"

namespace vel {

/// Which of the module's panels a click on the item opens.
enum class PanelKind : std::uint8_t { compact = 0, expanded = 1 };

class HostSettings {
 public:
  static constexpr const char* kSection = "org.velbar.host";

  /// The store outlives this object.
  explicit HostSettings(PreferencesStore& store) : store_(store) {}

  /// From one refresh to the next, in milliseconds, within the limits; 1,000 by default.
  [[nodiscard]] std::int64_t refreshInterval() const;
  void setRefreshInterval(std::int64_t milliseconds);

  /// The desktop's by default, and for a value that means nothing.
  [[nodiscard]] Appearance appearance() const;
  void setAppearance(Appearance appearance);

  /// The expanded one by default, and for a value that means nothing.
  [[nodiscard]] PanelKind panel() const;
  void setPanel(PanelKind panel);

  static constexpr std::int64_t kShortestInterval = 100;
  static constexpr std::int64_t kLongestInterval = 3'600'000;

 private:
  PreferencesStore& store_;
};

}  // namespace vel
