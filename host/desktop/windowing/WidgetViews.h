// The way from a view to its widget, and back.
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

#include "platform/windowing/View.h"

namespace vel {

/// What a view over a widget of Qt's is besides.
class QtWidgetOwner {
 public:
  QtWidgetOwner() = default;
  virtual ~QtWidgetOwner() = default;
  QtWidgetOwner(const QtWidgetOwner&) = delete;
  QtWidgetOwner& operator=(const QtWidgetOwner&) = delete;

  [[nodiscard]] virtual QWidget& widget() const = 0;
};

/// Null for no view, or one of another toolkit's.
[[nodiscard]] QWidget* widgetOf(View* view);

/// Null for a widget that is no view's.
[[nodiscard]] View* viewOf(const QWidget& widget);

/// Makes a view known to its widget while it lives, which the widget need not do as long.
class ViewRegistration {
 public:
  ViewRegistration(QWidget& widget, View& view);
  ~ViewRegistration();
  ViewRegistration(const ViewRegistration&) = delete;
  ViewRegistration& operator=(const ViewRegistration&) = delete;

 private:
  QPointer<QObject> entry_;
};

}  // namespace vel
