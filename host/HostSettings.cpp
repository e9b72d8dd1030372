#include "host/HostSettings.h"

#include <algorithm>

namespace vel {
namespace {

constexpr const char* kRefreshInterval = "refreshInterval";
constexpr const char* kAppearance = "appearance";
constexpr const char* kPanel = "panel";
constexpr std::int64_t kDefaultInterval = 1000;

}  // namespace

std::int64_t HostSettings::refreshInterval() const {
  const auto milliseconds = store_.objectForKey(kRefreshInterval, kSection);
  return std::clamp(milliseconds.value_or(kDefaultInterval), kShortestInterval, kLongestInterval);
}

void HostSettings::setRefreshInterval(std::int64_t milliseconds) {
  store_.setObject(milliseconds, kRefreshInterval, kSection);
}

Appearance HostSettings::appearance() const {
  const auto value = store_.objectForKey(kAppearance, kSection);
  return value == 1 ? Appearance::light : value == 2 ? Appearance::dark : Appearance::followDesktop;
}

void HostSettings::setAppearance(Appearance appearance) {
  store_.setObject(static_cast<std::int64_t>(appearance), kAppearance, kSection);
}

PanelKind HostSettings::panel() const {
  return store_.objectForKey(kPanel, kSection) == 0 ? PanelKind::compact : PanelKind::expanded;
}

void HostSettings::setPanel(PanelKind panel) {
  store_.setObject(static_cast<std::int64_t>(panel), kPanel, kSection);
}

}  // namespace vel
