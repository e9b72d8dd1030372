#include "host/desktop/PreferencesWindow.h"

#include <QIcon>
#include <QKeyEvent>
#include <QPushButton>
#include <QVBoxLayout>

namespace vel {

PreferencesWindow::PreferencesWindow(const Texts& texts, const std::vector<Page>& pages)
    : tabs_(new QTabWidget) {
  setWindowTitle(texts("Velbar Preferences"));
  setWindowIcon(QIcon::fromTheme(QStringLiteral("org.velbar.Velbar")));
  for (const Page& page : pages) {
    tabs_->addTab(page.widget, page.title);
  }
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
