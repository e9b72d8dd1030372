#include "host/desktop/WidgetWindow.h"

#include <QFormLayout>
#include <QVBoxLayout>
#include <cmath>

namespace vel {

WidgetWindow::WidgetWindow(const Texts& texts, const Locale& locale, QWidget* view)
    : locale_(locale), view_(view) {
  setWindowTitle(QStringLiteral("Velbar"));
  setMinimumWidth(280);
  load_->setRange(0, 100);
  load_->setAccessibleName(texts("CPU"));
  averages_->setTextFormat(Qt::PlainText);
  averages_->setAccessibleName(texts("Load"));

  auto* column = new QVBoxLayout(this);
  if (view_ != nullptr) {
    column->addWidget(view_);
    view_->show();
  }
  auto* form = new QFormLayout;
  form->addRow(texts("CPU"), load_);
  form->addRow(texts("Load"), averages_);
  column->addLayout(form);
  column->addStretch();
}

WidgetWindow::~WidgetWindow() {
  if (view_ != nullptr) {
    view_->setParent(nullptr);
  }
}

void WidgetWindow::show(const CPUData& record) {
  const float busy = record.number(Reading::userCPU) + record.number(Reading::systemCPU);
  load_->setValue(static_cast<int>(std::lround(busy * 100.0F)));
  std::string text;
  for (const auto average : {Reading::loadAverage0, Reading::loadAverage1, Reading::loadAverage2}) {
    text += (text.empty() ? "" : "   ") +
            locale_.number(static_cast<double>(record.number(average)), 2);
  }
  averages_->setText(QString::fromStdString(text));
}

}  // namespace vel
