#include "host/desktop/DesktopHost.h"

#include <QApplication>
#include <QCursor>
#include <cmath>
#include <stdexcept>
#include <utility>

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
      panelAtStart_(options.panel),
      loop_(session, signals, [this] { refreshed(); }),
      description_(session.kernel(), session.module().readings(), texts) {
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
  session_.setVelPreferencesDefault(&store);
  QWidget* item = widgetOf(session_.module().statusbarView());
  if (item == nullptr) {
    throw std::runtime_error(session_.moduleBundle().directory().string() +
                             ": the module has no menu-bar item");
  }
  makeMenu();
  if (options.tray) {
    if (!QSystemTrayIcon::isSystemTrayAvailable()) {
      report("velbar", "no system tray yet; the icon comes with one");
    }
    tray_ = std::make_unique<TrayItem>(*item, *menu_, [this] { clickItem(); });
  } else {
    bar_ = std::make_unique<BarWindow>(
        *item, options.edge, options.fullWidth,
        BarWindow::Actions{[this] { clickItem(); }, [this] { openMenu(); },
                           [this] { openPreferences(); }, [] { QCoreApplication::quit(); }});
    bar_->show();
  }
  makePanel();
}

void DesktopHost::makeMenu() {
  menu_ = std::make_unique<ItemMenu>(
      texts_, session_.module(),
      ItemMenu::Actions{[this] { return panel(); }, [this](PanelKind panel) { setPanel(panel); },
                        [this] { openPreferences(); }, [] { QCoreApplication::quit(); }});
}

void DesktopHost::makePanel() {
  const auto panel = this->panel();
  if (!panel) {
    return;
  }
  panel_ = std::make_unique<PanelWindow>(
      *viewOf(*panel), bar_.get(),
      PanelWindow::Actions{[this] { return itemPlace(); }, [this] { loop_.refreshTwice(); }});
  QObject::connect(&menu_->menu(), &QMenu::aboutToHide, panel_.get(), [this] { focusPanel(); });
  panel_->setWindowTitle(texts_(session_.module().moduleName().c_str()));
}

void DesktopHost::startAsWidget(const Locale& locale) {
  session_.initNCApp();
  widget_ = std::make_unique<WidgetWindow>(texts_, locale,
                                           widgetOf(session_.module().notificationCenterView()));
  widget_->show();
}

void DesktopHost::run() {
  loop_.refreshEvery(interval_);
  if (panelAtStart_) {
    openPanel();
  }
  QApplication::exec();
}

// --- Panel and menu ---

QWidget* DesktopHost::viewOf(PanelKind panel) const {
  const ModulePrincipal& module = session_.module();
  return widgetOf(panel == PanelKind::compact ? module.statusbarCombinedView()
                                              : module.statusbarStandAloneView());
}

std::optional<PanelKind> DesktopHost::panel() const {
  const bool both = viewOf(PanelKind::compact) != nullptr && viewOf(PanelKind::expanded) != nullptr;
  return both ? std::optional(settings_.panel()) : std::nullopt;
}

QRect DesktopHost::itemPlace() const {
  return bar_ ? bar_->itemPlace() : tray_->place();
}

void DesktopHost::clickItem() {
  panel_ ? panel_->toggle() : openMenu();
}

void DesktopHost::openPanel() {
  if (panel_) {
    panel_->open();
  } else if (menu_) {
    openMenu();
  }
}

void DesktopHost::openMenu() {
  menu_->open(bar_ ? bar_->menuPosition() : QCursor::pos());
}

void DesktopHost::setPanel(PanelKind panel) {
  settings_.setPanel(panel);
  panel_->setPanel(*viewOf(panel));
  if (general_) {
    general_->showPanel(panel);
  }
}

void DesktopHost::offerEnding(const EndRequest& request) {
  if (!ender_) {
    ender_ = std::make_unique<ProcessEnder>(
        session_.kernel(), texts_, [this](bool asking) { asking ? void() : focusPanel(); });
  }
  ender_->offer(request);
}

/// Once a menu or a dialog has closed: the window manager may give the keyboard to another window.
void DesktopHost::focusPanel() {
  if (panel_ && panel_->isVisible()) {
    panel_->activateWindow();
  }
}

// --- Windows ---

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
      texts_, interval_, settings_.appearance(), panel(),
      GeneralPage::Actions{[this](std::int64_t milliseconds) {
                             settings_.setRefreshInterval(milliseconds);
                             loop_.refreshEvery(milliseconds);
                           },
                           [this](Appearance appearance) {
                             settings_.setAppearance(appearance);
                             theme_.setAppearance(appearance);
                           },
                           [this](PanelKind panel) { setPanel(panel); }});
  preferences_ = std::make_unique<PreferencesWindow>(texts_, session_.module(), *general_);
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
