#include "platform/headless/HeadlessControls.h"

#include <algorithm>

namespace vel {

bool TaggedItems::selectTag(std::int64_t tag) {
  const auto item = std::find_if(items_.begin(), items_.end(),
                                 [tag](const Item& candidate) { return candidate.tag == tag; });
  if (item == items_.end()) {
    return false;
  }
  selected_ = static_cast<std::size_t>(item - items_.begin());
  return true;
}

std::optional<std::int64_t> TaggedItems::selectedTag() const {
  return selected_ ? std::optional(items_[*selected_].tag) : std::nullopt;
}

void HeadlessButton::click() {
  if (isEnabled()) {
    on_ = !on_;
    sendAction();
  }
}

}  // namespace vel
