#include "host/desktop/windowing/WheelGuard.h"

#include <QEvent>
#include <QObject>

namespace vel {
namespace {

/// A child of its box, which deletes it.
class WheelGuard : public QObject {
 public:
  explicit WheelGuard(QComboBox& box) : QObject(&box), box_(box) { box.installEventFilter(this); }

 protected:
  bool eventFilter(QObject* /*object*/, QEvent* event) override {
    if (event->type() != QEvent::Wheel || box_.hasFocus()) {
      return false;
    }
    event->ignore();  // so that what the box lies in may scroll
    return true;
  }

 private:
  QComboBox& box_;
};

}  // namespace

void guardFromWheel(QComboBox& box) {
  box.setFocusPolicy(Qt::StrongFocus);
  new WheelGuard(box);
}

}  // namespace vel
