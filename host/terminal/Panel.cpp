#include "host/terminal/Panel.h"

#include "host/terminal/ViewSearch.h"

namespace vel {

Panel::Panel(View* view)
    : view_(dynamic_cast<HeadlessView<View>*>(view)), graph_(findView<VELGraphMultiple>(view)) {}

void Panel::setOnScreen(bool onScreen) {
  if (exists()) {
    view_->setWindowVisible(onScreen);
  }
}

const VELGraphMultiple* Panel::graph() const {
  return graph_ != nullptr && !graph_->isHidden() ? graph_ : nullptr;
}

}  // namespace vel
