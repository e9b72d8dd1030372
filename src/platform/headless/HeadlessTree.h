// The views inside a view. To be asked of any headless view by a dynamic cast.
#pragma once

#include <vector>

#include "platform/windowing/View.h"

namespace vel {

class HeadlessTree {
 public:
  HeadlessTree(const HeadlessTree&) = delete;
  HeadlessTree& operator=(const HeadlessTree&) = delete;

  /// In the nib's order.
  [[nodiscard]] const std::vector<View*>& subviews() const { return subviews_; }
  /// `view` outlives this one.
  void addSubview(View& view) { subviews_.push_back(&view); }

 protected:
  HeadlessTree() = default;
  ~HeadlessTree() = default;

 private:
  std::vector<View*> subviews_;
};

}  // namespace vel
