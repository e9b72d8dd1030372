// The controls of the settings.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "platform/windowing/View.h"

namespace vel {

/// Which of the classes below a control is exactly; a class derived from one of them is `other`.
enum class ControlClass : std::uint8_t { matrix, popUpButton, button, other };

class Control : public View {
 public:
  [[nodiscard]] virtual ControlClass controlClass() const = 0;

  /// Whether the user can operate it: the control's own flag, whatever the views above it do.
  [[nodiscard]] virtual bool isEnabled() const = 0;
  virtual void setEnabled(bool enabled) = 0;

  /// Called on the main thread after the user, not the program, has operated the control: it may be
  /// as it was.
  virtual void setAction(std::function<void()> action) = 0;
};

/// A check box.
class Button : public Control {
 public:
  static constexpr const char* kNibClass = "QCheckBox";

  /// 0 off, 1 on.
  [[nodiscard]] virtual std::int64_t state() const = 0;
  /// Anything but 0 is on.
  virtual void setState(std::int64_t state) = 0;
};

/// A group of radio buttons, its cells.
class Matrix : public Control {
 public:
  static constexpr const char* kNibClass = "Matrix";

  virtual void deselectAllCells() = 0;
  /// Without such a cell the selection stays.
  virtual void selectCellWithTag(std::int64_t tag) = 0;
  /// Nothing while no cell is selected.
  [[nodiscard]] virtual std::optional<std::int64_t> selectedTag() const = 0;
};

class PopUpButton : public Control {
 public:
  static constexpr const char* kNibClass = "QComboBox";

  /// Without such an item the selection stays.
  virtual void selectItemWithTag(std::int64_t tag) = 0;
  /// Nothing while no item is selected.
  [[nodiscard]] virtual std::optional<std::int64_t> selectedTag() const = 0;
};

/// A text that the user does not change: a caption or a figure. It is shown as it is, never as
/// markup.
class TextField : public View {
 public:
  static constexpr const char* kNibClass = "QLabel";

  /// In UTF-8; what is none shows as replacement characters.
  virtual void setStringValue(std::string_view text) = 0;
  [[nodiscard]] virtual std::string stringValue() const = 0;
};

}  // namespace vel
