#include "host/terminal/ModuleControls.h"

#include <algorithm>
#include <vector>

#include "host/terminal/ViewSearch.h"

namespace vel {

ModuleControls::ModuleControls(View* preferences)
    : ranking_(findView<HeadlessPopUpButton>(preferences, "popupCPUTop5Type")),
      cores_(findView<HeadlessPopUpButton>(preferences, "popupCPUCoresDisplayed")),
      graph_(findView<HeadlessButton>(preferences, "btnShowGraph")) {}

void ModuleControls::toggleGraph() {
  if (hasGraph()) {
    graph_->click();
  }
}

std::optional<std::int64_t> ModuleControls::ranking() const {
  return hasRanking() ? ranking_->selectedTag() : std::nullopt;
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

}  // namespace vel
