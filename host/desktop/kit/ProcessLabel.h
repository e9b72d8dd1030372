// A label that can be clicked, as a link can.
#pragma once

#include <QEvent>
#include <QPaintEvent>
#include <QPoint>
#include <QString>
#include <functional>
#include <utility>

#include "host/desktop/windowing/TextLabel.h"

namespace vel {

/// With an action it shows under the mouse that it can be clicked, takes the keyboard's focus, and
/// is a button for assistive technology. Its tool tip is its text and the details below it, which
/// are its description for assistive technology.
class ProcessLabel : public TextLabel {
 public:
  using Action = std::function<void(QPoint)>;
  /// Lines of plain text.
  using Details = std::function<QString()>;

  explicit ProcessLabel(QWidget* parent);

  /// Called with the place on the screen that it is about, at a click, Return, Space or what else
  /// asks for a menu. None if empty.
  void setAction(Action action);
  [[nodiscard]] bool hasAction() const { return static_cast<bool>(action_); }
  void act(QPoint position) const;
  /// As if by keyboard.
  void act() const;

  /// Called when somebody asks, and at no other time.
  void setDetails(Details details) { details_ = std::move(details); }
  [[nodiscard]] QString details() const { return details_ ? details_() : QString(); }

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  [[nodiscard]] bool actAt(const QEvent& event) const;
  void showToolTip(QPoint position);

  Action action_;
  Details details_;
};

}  // namespace vel
