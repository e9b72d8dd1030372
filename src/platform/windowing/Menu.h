// A menu as the module describes it; the host shows it.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vel {

/// An icon, by its name in the desktop's icon theme or by the absolute path of a file.
struct Image {
  std::string name;
  bool operator==(const Image&) const = default;
};

struct MenuItem {
  std::string title;
  std::function<void(const MenuItem& sender)> action;
  std::string keyEquivalent;  ///< none if empty
  std::int64_t tag = 0;
  std::optional<Image> mixedStateImage;
  bool enabled = true;
  std::string toolTip;
};

class Menu {
 public:
  void addItem(MenuItem item) { items_.push_back(std::move(item)); }
  [[nodiscard]] const std::vector<MenuItem>& items() const { return items_; }

 private:
  std::vector<MenuItem> items_;
};

}  // namespace vel
