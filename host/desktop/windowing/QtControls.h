// The controls of the settings over Qt's widgets.
#pragma once

#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QObject>
#include <QRadioButton>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "host/desktop/windowing/PlainText.h"
#include "host/desktop/windowing/QtView.h"
#include "platform/windowing/Controls.h"

namespace vel {

/// What the controls below have in common.
template <typename Interface, ControlClass kControlClass>
class QtControl : public QtView<Interface> {
 public:
  using QtView<Interface>::QtView;

  [[nodiscard]] ControlClass controlClass() const override { return kControlClass; }
  [[nodiscard]] bool isEnabled() const override {
    return this->widget().isEnabledTo(this->widget().parentWidget());
  }
  void setEnabled(bool enabled) override { this->widget().setEnabled(enabled); }
  void setAction(std::function<void()> action) override { action_ = std::move(action); }

 protected:
  /// Sends the action at the widget's signal, until this control is gone.
  template <typename Sender, typename Signal>
  void actAt(const Sender& sender, Signal signal) {
    QObject::connect(&sender, signal, &receiver_, [this] {
      // A copy, as an action may set another one.
      if (const std::function<void()> action = action_) {
        action();
      }
    });
  }

 private:
  std::function<void()> action_;
  QObject receiver_;
};

class QtButton final : public QtControl<Button, ControlClass::button> {
 public:
  explicit QtButton(QCheckBox& box);

  [[nodiscard]] std::int64_t state() const override { return box_.isChecked() ? 1 : 0; }
  void setState(std::int64_t state) override { box_.setChecked(state != 0); }

 private:
  QCheckBox& box_;
};

/// The radio buttons need not be siblings, and one is selected at most.
class QtMatrix final : public QtControl<Matrix, ControlClass::matrix> {
 public:
  struct Cell {
    QRadioButton* button = nullptr;
    std::int64_t tag = 0;
  };

  QtMatrix(QWidget& widget, std::vector<Cell> cells);

  void deselectAllCells() override;
  void selectCellWithTag(std::int64_t tag) override;
  [[nodiscard]] std::optional<std::int64_t> selectedTag() const override;

 private:
  std::vector<Cell> cells_;
  QButtonGroup group_;
};

/// A mouse wheel changes it only while it has the focus, and does not give it the focus: rolling
/// through the settings changes none of them.
class QtPopUpButton final : public QtControl<PopUpButton, ControlClass::popUpButton> {
 public:
  /// As many tags as `box` has items. The items keep them as their data.
  QtPopUpButton(QComboBox& box, const std::vector<std::int64_t>& tags);

  void selectItemWithTag(std::int64_t tag) override;
  [[nodiscard]] std::optional<std::int64_t> selectedTag() const override;

 private:
  QComboBox& box_;
};

/// The text of a label, whatever else `Interface` has. An accelerator or markup in the nib's text
/// is left as it is; what comes later is shown as plainText() has it.
template <typename Interface>
class QtText : public QtView<Interface> {
 public:
  explicit QtText(QLabel& label)
      : QtView<Interface>(label), label_(label), given_(label.text().toStdString()) {}

  void setStringValue(std::string_view text) override {
    if (text != given_) {
      given_ = text;
      label_.setTextFormat(Qt::PlainText);
      label_.setText(plainText(text));
    }
  }
  [[nodiscard]] std::string stringValue() const override { return given_; }

 protected:
  [[nodiscard]] QLabel& label() const { return label_; }

 private:
  QLabel& label_;
  std::string given_;
};

using QtTextField = QtText<TextField>;

}  // namespace vel
