// A widget that its view paints.
#pragma once

#include <QEvent>
#include <QPainter>
#include <QWidget>
#include <functional>

namespace vel {

class PaintedWidget : public QWidget {
 public:
  using QWidget::QWidget;

  /// `paint` draws the widget, `fontDidChange` may be empty.
  void setView(std::function<void(QPainter&)> paint, std::function<void()> fontDidChange = {});

 protected:
  void paintEvent(QPaintEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  std::function<void(QPainter&)> paint_;
  std::function<void()> fontDidChange_;
};

}  // namespace vel
