#include "host/desktop/DesktopHost.h"

#include <QApplication>
#include <cmath>
#include <stdexcept>

#include "host/Report.h"
#include "host/desktop/windowing/QtView.h"

namespace vel {
namespace {

std::int64_t intervalOf(const DesktopOptions& options, const HostSettings& settings) {
  return options.interval ? std::llround(*options.interval * 1000.0) : settings.refreshInterval();
}

}  // namespace

DesktopHost::DesktopHost(const DesktopOptions& options, ModuleSession& session,
                         PreferencesStore& store, const Texts& texts, const Locale& locale,
                         Theme& theme, Signals& signals)
    : session_(session),
      texts_(texts),
      theme_(theme),
      settings_(store),
      interval_(intervalOf(options, settings_)),
      loop_(session, signals, [this] { refreshed(); }) {
  theme_.setAppearance(settings_.appearance());
  QApplication::setQuitOnLastWindowClosed(options.widget);
  if (options.widget) {
    startAsWidget(locale);
  } else {
    startInMenuBar(options, store);
  }
  if (options.preferences) {
    openPreferences();
  }
}

void DesktopHost::startInMenuBar(const DesktopOptions& options, PreferencesStore& store) {
  session_.initMainApp();
  session_.module().setVelPreferencesDefault(&store);
  QWidget* item = widgetOf(session_.module().statusbarView());
  if (item == nullptr) {
    throw std::runtime_error(session_.moduleBundle().directory().string() +
                             ": the module has no menu-bar item");
  }
  const auto openPreferencesAction = [this] { openPreferences(); };
  menu_ = std::make_unique<ItemMenu>(
      texts_, session_.module(),
      ItemMenu::Actions{openPreferencesAction, [] { QCoreApplication::quit(); }});
  if (options.tray) {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
      report("velbar", "no system tray yet; the icon comes with one");
    }
    tray_ = std::make_unique<TrayItem>(*item, *menu_);
  } else {
    bar_ = std::make_unique<BarWindow>(
        *item, options.edge, options.fullWidth,
        BarWindow::Actions{[this](QPoint position) { menu_->open(position); },
                           openPreferencesAction, [] { QCoreApplication::quit(); }});
    bar_->show();
  }
}

void DesktopHost::startAsWidget(const Locale& locale) {
  session_.initNCApp();
  widget_ = std::make_unique<WidgetWindow>(texts_, locale,
                                           widgetOf(session_.module().notificationCenterView()));
  widget_->show();
}

void DesktopHost::run() {
  loop_.refreshEvery(interval_);
  QApplication::exec();
}

void DesktopHost::refreshed() {
  if (tray_) {
    tray_->refresh();
  }
  if (widget_) {
    widget_->show(session_.module().readings());
  }
}

void DesktopHost::openPreferences() {
  if (!preferences_) {
    makePreferences();
  }
  preferences_->open();
}

void DesktopHost::makePreferences() {
  general_ = std::make_unique<GeneralPage>(
      texts_, interval_, settings_.appearance(),
      GeneralPage::Actions{[this](std::int64_t milliseconds) {
                             settings_.setRefreshInterval(milliseconds);
                             loop_.refreshEvery(milliseconds);
                           },
                           [this](Appearance appearance) {
                             settings_.setAppearance(appearance);
                             theme_.setAppearance(appearance);
                           }});
  std::vector<PreferencesWindow::Page> pages;
  if (QWidget* page = widgetOf(session_.module().preferencesModuleView())) {
    pages.push_back({texts_(session_.module().moduleName().c_str()), page});
  }
  pages.push_back({texts_("General"), general_.get()});
  preferences_ = std::make_unique<PreferencesWindow>(texts_, pages);
}

void DesktopHost::bringUp() {
  if (bar_) {
    bar_->bringUp();
  }
  if (widget_) {
    widget_->show();
    widget_->raise();
    widget_->activateWindow();
  }
}

}  // namespace vel
