// The views inside a view. To be asked of any headless view by a dynamic cast.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "platform/windowing/View.h"

namespace vel {

class HeadlessTree {
 public:
  HeadlessTree(const HeadlessTree&) = delete;
  HeadlessTree& operator=(const HeadlessTree&) = delete;

  /// The nib's; empty for a view without one.
  [[nodiscard]] const std::string& name() const { return name_; }
  void setName(std::string name) { name_ = std::move(name); }

  /// In the nib's order.
  [[nodiscard]] const std::vector<View*>& subviews() const { return subviews_; }
  /// `view` outlives this one.
  void addSubview(View& view) { subviews_.push_back(&view); }

 protected:
  HeadlessTree() = default;
  ~HeadlessTree() = default;

 private:
  std::string name_;
  std::vector<View*> subviews_;
};

}  // namespace vel
