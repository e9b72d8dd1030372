#include "host/terminal/ModuleControls.h"

#include <algorithm>
#include <functional>
#include <vector>

#include "host/terminal/ViewSearch.h"

namespace vel {
namespace {

std::optional<std::int64_t> selectedTag(const HeadlessPopUpButton* popUp) {
  return popUp != nullptr ? popUp->selectedTag() : std::nullopt;
}

/// The nearest tag after the selected one in the order of `isBefore`.
template <typename Order>
void chooseNearest(HeadlessPopUpButton* popUp, Order isBefore) {
  const auto selected = selectedTag(popUp);
  if (!selected) {
    return;
  }
  std::optional<std::int64_t> nearest;
  for (const TaggedItems::Item& item : popUp->items().all()) {
    if (isBefore(*selected, item.tag) && (!nearest || isBefore(item.tag, *nearest))) {
      nearest = item.tag;
    }
  }
  if (nearest) {
    popUp->choose(*nearest);
  }
}

}  // namespace

ModuleControls::ModuleControls(View* preferences, View* alertPreferences)
    : ranking_(findView<HeadlessPopUpButton>(preferences, "popupCPUTop5Type")),
      cores_(findView<HeadlessPopUpButton>(preferences, "popupCPUCoresDisplayed")),
      graph_(findView<HeadlessButton>(preferences, "btnShowGraph")),
      gpu_(findView<HeadlessButton>(preferences, "gpugfxBtn")),
      alert_(findView<HeadlessButton>(alertPreferences, "btnNotifyMoreThan")),
      threshold_(findView<HeadlessPopUpButton>(alertPreferences, "popNotifyMoreThanValue")),
      minutes_(findView<HeadlessPopUpButton>(alertPreferences, "popTimeWhereValueMoreThan")),
      gpuAlert_(findView<HeadlessButton>(alertPreferences, "btnNotifygfxGPUCardSwitch")) {}

bool ModuleControls::isOffered(const HeadlessButton* button) {
  return button != nullptr && !button->isHidden();
}

bool ModuleControls::isOn(const HeadlessButton* button) {
  return isOffered(button) && button->state() != 0;
}

void ModuleControls::toggle(HeadlessButton* button) {
  if (isOffered(button)) {
    button->click();
  }
}

std::optional<AlertRule> ModuleControls::alertRule() const {
  const bool hasRule = isOn(alert_);
  const auto threshold = selectedTag(hasRule ? threshold_ : nullptr);
  const auto minutes = selectedTag(hasRule ? minutes_ : nullptr);
  return threshold && minutes ? std::optional(AlertRule{*threshold, *minutes}) : std::nullopt;
}

bool ModuleControls::isGPUAlertOn() const {
  return isOn(gpu_) && isOn(gpuAlert_);
}

std::optional<std::int64_t> ModuleControls::ranking() const {
  return selectedTag(ranking_);
}

void ModuleControls::chooseNext(HeadlessPopUpButton* popUp) {
  if (popUp == nullptr || popUp->items().all().empty()) {
    return;
  }
  const std::vector<TaggedItems::Item>& items = popUp->items().all();
  const auto tag = popUp->selectedTag();
  const auto selected = std::find_if(
      items.begin(), items.end(), [tag](const TaggedItems::Item& item) { return item.tag == tag; });
  const bool isLast = selected == items.end() || selected + 1 == items.end();
  popUp->choose(isLast ? items.front().tag : (selected + 1)->tag);
}

void ModuleControls::chooseHigher(HeadlessPopUpButton* popUp) {
  chooseNearest(popUp, std::less<>());
}

void ModuleControls::chooseLower(HeadlessPopUpButton* popUp) {
  chooseNearest(popUp, std::greater<>());
}

}  // namespace vel
