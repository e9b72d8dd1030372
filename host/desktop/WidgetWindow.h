// The small window of the widget mode: the module's widget view, and the readings of the moment.
#pragma once

#include <QLabel>
#include <QProgressBar>
#include <QWidget>

#include "host/desktop/Texts.h"
#include "platform/foundation/Locale.h"
#include "platform/host/CPUData.h"

namespace vel {

class WidgetWindow : public QWidget {
 public:
  /// `view`, which may be null, lives elsewhere and is only shown here. `locale` outlives the
  /// window.
  WidgetWindow(const Texts& texts, const Locale& locale, QWidget* view);
  ~WidgetWindow() override;

  /// To be called after a refresh.
  void show(const CPUData& record);
  using QWidget::show;

 private:
  const Locale& locale_;
  QWidget* view_;
  QProgressBar* load_ = new QProgressBar;
  QLabel* averages_ = new QLabel;
};

}  // namespace vel
