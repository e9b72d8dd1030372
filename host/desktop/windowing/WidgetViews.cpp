#include "host/desktop/windowing/WidgetViews.h"

namespace vel {
namespace {

/// A child of the widget's, which deletes it.
class Entry : public QObject {
 public:
  Entry(QWidget& widget, View& entryView) : QObject(&widget), view(entryView) {}
  View& view;
};

}  // namespace

QWidget* widgetOf(View* view) {
  const auto* owner = dynamic_cast<QtWidgetOwner*>(view);
  return owner != nullptr ? &owner->widget() : nullptr;
}

View* viewOf(const QWidget& widget) {
  for (QObject* child : widget.children()) {
    if (const auto* entry = dynamic_cast<Entry*>(child)) {
      return &entry->view;
    }
  }
  return nullptr;
}

ViewRegistration::ViewRegistration(QWidget& widget, View& view) : entry_(new Entry(widget, view)) {}

ViewRegistration::~ViewRegistration() {
  delete entry_.data();
}

}  // namespace vel
