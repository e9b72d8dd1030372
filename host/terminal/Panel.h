// The module's expanded panel, whose processes and graph the terminal shows in its own way.
#pragma once

#include "platform/headless/HeadlessView.h"
#include "platform/host/VELGraphMultiple.h"

namespace vel {

class Panel {
 public:
  /// `view` is the module's, null for none.
  explicit Panel(View* view);

  [[nodiscard]] bool exists() const { return view_ != nullptr; }

  /// While the panel is not on screen the module reads no processes for it.
  void setOnScreen(bool onScreen);
  [[nodiscard]] bool isOnScreen() const { return exists() && view_->isWindowVisible(); }

  /// Null while it is hidden.
  [[nodiscard]] const VELGraphMultiple* graph() const;

 private:
  HeadlessView<View>* view_;
  const VELGraphMultiple* graph_;
};

}  // namespace vel
