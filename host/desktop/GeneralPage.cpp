#include "host/desktop/GeneralPage.h"

#include <QFormLayout>
#include <QLabel>
#include <QLocale>
#include <set>
#include <utility>

#include "host/desktop/windowing/WheelGuard.h"

namespace vel {
namespace {

QString intervalText(std::int64_t milliseconds) {
  return QLocale().toString(static_cast<double>(milliseconds) / 1000.0, 'g',
                            QLocale::FloatingPointShortest) +
         QStringLiteral(" s");
}

/// An interval set by hand has an item too.
void fillIntervals(QComboBox& box, std::int64_t current) {
  std::set<std::int64_t> intervals{250, 500, 1000, 2000, 3000, 5000, 10000};
  intervals.insert(current);
  for (const std::int64_t interval : intervals) {
    box.addItem(intervalText(interval), QVariant::fromValue(interval));
  }
  box.setCurrentIndex(box.findData(QVariant::fromValue(current)));
}

QComboBox* addRow(QFormLayout& form, const QString& caption, const QString& name) {
  auto* box = new QComboBox;
  box->setAccessibleName(name);
  guardFromWheel(*box);
  form.addRow(caption, box);
  return box;
}

}  // namespace

GeneralPage::GeneralPage(const Texts& texts, std::int64_t refreshInterval, Appearance appearance,
                         std::optional<PanelKind> panel, const Actions& actions) {
  auto* form = new QFormLayout(this);
  form->setFormAlignment(Qt::AlignTop | Qt::AlignLeft);
  form->setLabelAlignment(Qt::AlignRight);

  auto* interval = addRow(*form, texts("&Refresh every:"), texts("Refresh every"));
  interval->setObjectName(QStringLiteral("refreshInterval"));
  fillIntervals(*interval, refreshInterval);
  connect(interval, &QComboBox::activated, this, [interval, set = actions.setRefreshInterval] {
    set(interval->currentData().value<std::int64_t>());
  });

  auto* look = addRow(*form, texts("&Appearance:"), texts("Appearance"));
  look->setObjectName(QStringLiteral("appearance"));
  for (const char* name : {"As the desktop", "Light", "Dark"}) {
    look->addItem(texts(name));
  }
  look->setCurrentIndex(static_cast<int>(appearance));
  connect(look, &QComboBox::activated, this,
          [set = actions.setAppearance](int index) { set(static_cast<Appearance>(index)); });

  if (panel) {
    panel_ = addRow(*form, texts("&Panel:"), texts("Panel"));
    panel_->setObjectName(QStringLiteral("panel"));
    panel_->addItems({texts("Compact"), texts("Expanded")});
    showPanel(*panel);
    connect(panel_, &QComboBox::activated, this,
            [set = actions.setPanel](int index) { set(static_cast<PanelKind>(index)); });
  }
}

void GeneralPage::showPanel(PanelKind panel) {
  if (panel_ != nullptr) {
    panel_->setCurrentIndex(static_cast<int>(panel));
  }
}

}  // namespace vel
