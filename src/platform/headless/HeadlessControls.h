// The controls of the settings as plain state, with what the user does to them.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/headless/HeadlessView.h"
#include "platform/windowing/Controls.h"

namespace vel {

/// What the user can choose from: a pop-up's items or a matrix's cells, one of them selected at
/// most. Of items with the same tag the first answers to it.
class TaggedItems {
 public:
  struct Item {
    std::string title;
    std::int64_t tag = 0;
    bool operator==(const Item&) const = default;
  };

  void add(Item item) { items_.push_back(std::move(item)); }
  [[nodiscard]] const std::vector<Item>& all() const { return items_; }

  void deselect() { selected_.reset(); }
  /// `index` is below `all().size()`.
  void selectIndex(std::size_t index) { selected_ = index; }
  /// Without such an item the selection stays. Returns whether there is one.
  bool selectTag(std::int64_t tag);
  [[nodiscard]] std::optional<std::int64_t> selectedTag() const;

 private:
  std::vector<Item> items_;
  std::optional<std::size_t> selected_;
};

template <typename Interface, ControlClass kClass>
class HeadlessControl : public HeadlessView<Interface> {
 public:
  [[nodiscard]] ControlClass controlClass() const override { return kClass; }
  [[nodiscard]] bool isEnabled() const override { return enabled_; }
  void setEnabled(bool enabled) override { enabled_ = enabled; }
  void setAction(std::function<void()> action) override { action_ = std::move(action); }

 protected:
  void sendAction() {
    // A copy: the action may set another.
    if (const auto action = action_) {
      action();
    }
  }

 private:
  bool enabled_ = true;
  std::function<void()> action_;
};

class HeadlessButton : public HeadlessControl<Button, ControlClass::button> {
 public:
  [[nodiscard]] std::int64_t state() const override { return on_ ? 1 : 0; }
  void setState(std::int64_t state) override { on_ = state != 0; }

  [[nodiscard]] const std::string& title() const { return title_; }
  void setTitle(std::string title) { title_ = std::move(title); }

  /// The user's click: toggles the state, unless the button is disabled.
  void click();

 private:
  bool on_ = false;
  std::string title_;
};

/// A control with one selection out of some.
template <typename Interface, ControlClass kClass>
class HeadlessChoice : public HeadlessControl<Interface, kClass> {
 public:
  [[nodiscard]] std::optional<std::int64_t> selectedTag() const override {
    return items_.selectedTag();
  }

  [[nodiscard]] TaggedItems& items() { return items_; }

  /// The user's choice, also of what is selected already; a tag that nothing has cannot be chosen,
  /// nor can anything while the control is disabled.
  void choose(std::int64_t tag) {
    if (this->isEnabled() && items_.selectTag(tag)) {
      this->sendAction();
    }
  }

 private:
  TaggedItems items_;
};

class HeadlessMatrix : public HeadlessChoice<Matrix, ControlClass::matrix> {
 public:
  void deselectAllCells() override { items().deselect(); }
  void selectCellWithTag(std::int64_t tag) override { items().selectTag(tag); }
};

class HeadlessPopUpButton : public HeadlessChoice<PopUpButton, ControlClass::popUpButton> {
 public:
  void selectItemWithTag(std::int64_t tag) override { items().selectTag(tag); }
};

/// A text, whatever else `Interface` has.
template <typename Interface>
class HeadlessText : public HeadlessView<Interface> {
 public:
  void setStringValue(std::string_view text) override {
    text_ = text;
    this->setNeedsDisplay();
  }
  [[nodiscard]] std::string stringValue() const override { return text_; }

 private:
  std::string text_;
};

using HeadlessTextField = HeadlessText<TextField>;

}  // namespace vel
