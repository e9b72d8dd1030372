// Finds views in a tree of headless views.
#pragma once

#include <string_view>
#include <vector>

#include "platform/headless/HeadlessTree.h"

namespace vel {

/// The first T among `root` and all that is inside it, of that name unless it is empty. Null when
/// there is none.
template <typename T>
T* findView(View* root, std::string_view name = {}) {
  std::vector<View*> left(root == nullptr ? 0 : 1, root);
  while (!left.empty()) {
    View* const view = left.back();
    left.pop_back();
    const auto* tree = dynamic_cast<const HeadlessTree*>(view);
    if (auto* found = dynamic_cast<T*>(view);
        found != nullptr && (name.empty() || (tree != nullptr && tree->name() == name))) {
      return found;
    }
    if (tree != nullptr) {
      left.insert(left.end(), tree->subviews().rbegin(), tree->subviews().rend());
    }
  }
  return nullptr;
}

}  // namespace vel
