#include "host/desktop/PreferencesWindow.h"

#include <QIcon>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

#include "host/desktop/windowing/WidgetViews.h"

namespace vel {

PreferencesWindow::PreferencesWindow(const Texts& texts, const ModulePrincipal& module,
                                     QWidget& general)
    : tabs_(new QTabWidget) {
  setWindowTitle(texts("Velbar Preferences"));
  setWindowIcon(QIcon::fromTheme(QStringLiteral("org.velbar.Velbar")));
  addPage(texts(module.moduleName().c_str()), widgetOf(module.preferencesModuleView()));
  addPage(texts("Alerts"), widgetOf(module.preferenceNotificationView()));
  addPage(texts("General"), &general);
  auto* close = new QPushButton(texts("Clos&e"));
  connect(close, &QPushButton::clicked, this, &QWidget::close);

  auto* column = new QVBoxLayout(this);
  column->setSizeConstraint(QLayout::SetFixedSize);
  column->addWidget(tabs_);
  column->addWidget(close, 0, Qt::AlignRight);
}

PreferencesWindow::~PreferencesWindow() {
  // They are not deleted with the window.
  while (tabs_->count() > 0) {
    QWidget* page = tabs_->widget(0);
    tabs_->removeTab(0);
    page->setParent(nullptr);
  }
}

void PreferencesWindow::addPage(const QString& title, QWidget* page) {
  if (page != nullptr) {
    tabs_->addTab(page, title);
  }
}

void PreferencesWindow::open() {
  show();
  raise();
  activateWindow();
}

void PreferencesWindow::showPage(int index) {
  tabs_->setCurrentIndex(index);
}

void PreferencesWindow::keyPressEvent(QKeyEvent* event) {
  if (event->matches(QKeySequence::Cancel) || event->matches(QKeySequence::Close)) {
    close();
  } else {
    QWidget::keyPressEvent(event);
  }
}

}  // namespace vel
