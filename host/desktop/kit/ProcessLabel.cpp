#include "host/desktop/kit/ProcessLabel.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QTextDocument>
#include <QToolTip>
#include <utility>

namespace vel {
namespace {

class AccessibleProcessLabel : public QAccessibleWidget {
 public:
  explicit AccessibleProcessLabel(ProcessLabel& label) : QAccessibleWidget(&label), label_(label) {}

  [[nodiscard]] QAccessible::Role role() const override {
    return label_.hasAction() ? QAccessible::Button : QAccessible::StaticText;
  }
  [[nodiscard]] QString text(QAccessible::Text kind) const override {
    switch (kind) {
      case QAccessible::Name:
        return label_.text();
      case QAccessible::Description:
        return label_.details();
      default:
        return QAccessibleWidget::text(kind);
    }
  }
  [[nodiscard]] QStringList actionNames() const override {
    QStringList names = QAccessibleWidget::actionNames();
    if (label_.hasAction()) {
      names.prepend(pressAction());
    }
    return names;
  }
  void doAction(const QString& name) override {
    if (name == pressAction()) {
      label_.act();
    } else {
      QAccessibleWidget::doAction(name);
    }
  }

 private:
  ProcessLabel& label_;
};

QAccessibleInterface* describe(const QString& /*className*/, QObject* object) {
  auto* label = dynamic_cast<ProcessLabel*>(object);
  return label != nullptr ? std::make_unique<AccessibleProcessLabel>(*label).release() : nullptr;
}

bool isPress(const QKeyEvent& event) {
  return !event.isAutoRepeat() && (event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter ||
                                   event.key() == Qt::Key_Space);
}

}  // namespace

ProcessLabel::ProcessLabel(QWidget* parent) : TextLabel(parent) {
  QAccessible::installFactory(describe);  // Once: Qt knows it the next time.
}

void ProcessLabel::setAction(Action action) {
  action_ = std::move(action);
  setFocusPolicy(hasAction() ? Qt::StrongFocus : Qt::NoFocus);
  setAttribute(Qt::WA_Hover, hasAction());
  if (hasAction()) {
    setCursor(Qt::PointingHandCursor);
  } else {
    unsetCursor();
    clearFocus();
  }
  update();
}

void ProcessLabel::act(QPoint position) const {
  // A copy, as an action may set another one.
  if (const Action action = action_) {
    action(position);
  }
}

void ProcessLabel::act() const {
  act(mapToGlobal(rect().bottomLeft()));
}

bool ProcessLabel::event(QEvent* event) {
  if (event->type() == QEvent::ToolTip) {
    showToolTip(static_cast<QHelpEvent*>(event)->globalPos());
    return true;
  }
  return (hasAction() && actAt(*event)) || TextLabel::event(event);
}

/// Whether the event is one of those that matter.
bool ProcessLabel::actAt(const QEvent& event) const {
  switch (event.type()) {
    case QEvent::MouseButtonPress:
      return static_cast<const QMouseEvent&>(event).button() == Qt::LeftButton;
    case QEvent::MouseButtonRelease: {
      const auto& mouse = static_cast<const QMouseEvent&>(event);
      if (mouse.button() == Qt::LeftButton && rect().contains(mouse.position().toPoint())) {
        act(mouse.globalPosition().toPoint());
      }
      return mouse.button() == Qt::LeftButton;
    }
    case QEvent::KeyPress:
      if (isPress(static_cast<const QKeyEvent&>(event))) {
        act();
        return true;
      }
      return false;
    case QEvent::ContextMenu: {
      const auto& menu = static_cast<const QContextMenuEvent&>(event);
      menu.reason() == QContextMenuEvent::Mouse ? act(menu.globalPos()) : act();
      return true;
    }
    default:
      return false;
  }
}

void ProcessLabel::showToolTip(QPoint position) {
  const QString more = details();
  const QString whole = more.isEmpty() ? text() : text() + u'\n' + more;
  // As rich text, lest the text be taken for such; and as such it wraps.
  QToolTip::showText(position, Qt::convertFromPlainText(whole, Qt::WhiteSpaceNormal), this);
}

void ProcessLabel::paintEvent(QPaintEvent* event) {
  TextLabel::paintEvent(event);
  if (!hasAction()) {
    return;
  }
  QPainter painter(this);
  if (underMouse() || hasFocus()) {
    const int width = std::min(fontMetrics().horizontalAdvance(text()), contentsRect().width());
    const QRect text = QStyle::alignedRect(layoutDirection(), alignment(),
                                           {width, fontMetrics().height()}, contentsRect());
    const int line = text.top() + fontMetrics().ascent() + fontMetrics().underlinePos();
    painter.setPen(palette().color(foregroundRole()));
    painter.drawLine(text.left(), line, text.right(), line);
  }
  if (hasFocus()) {
    QStyleOptionFocusRect option;
    option.initFrom(this);
    option.backgroundColor = palette().color(backgroundRole());
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
  }
}

}  // namespace vel
