// Velbar on the desktop: the item in the menu bar or the tray, its panel and menu, the
// preferences.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>

#include "host/HostSettings.h"
#include "host/Signals.h"
#include "host/desktop/BarWindow.h"
#include "host/desktop/GeneralPage.h"
#include "host/desktop/ItemMenu.h"
#include "host/desktop/MainLoop.h"
#include "host/desktop/Options.h"
#include "host/desktop/PanelWindow.h"
#include "host/desktop/PreferencesWindow.h"
#include "host/desktop/Texts.h"
#include "host/desktop/TrayItem.h"
#include "host/desktop/WidgetWindow.h"
#include "host/desktop/kit/EndRequest.h"
#include "host/desktop/kit/Theme.h"
#include "host/desktop/processes/ProcessDescription.h"
#include "host/desktop/processes/ProcessEnder.h"
#include "host/session/ModuleSession.h"

namespace vel {

/// The module's views belong to the session, which outlives the host.
class DesktopHost {
 public:
  /// Everything outlives the host. Throws std::runtime_error when the module cannot serve.
  DesktopHost(const DesktopOptions& options, ModuleSession& session, PreferencesStore& store,
              const Texts& texts, const Locale& locale, Theme& theme, Signals& signals);

  /// Until the user or a signal ends the program. To be called once.
  void run();

  void openPreferences();
  /// As a click on the item does, but never closes it.
  void openPanel();
  void offerEnding(const EndRequest& request);
  [[nodiscard]] QString describeProcess(std::int64_t pid) { return description_.of(pid); }
  /// Shows the item or the window, above the others.
  void bringUp();

 private:
  void startInMenuBar(const DesktopOptions& options, PreferencesStore& store);
  void startAsWidget(const Locale& locale);
  void makeMenu();
  void makePanel();
  [[nodiscard]] QWidget* viewOf(PanelKind panel) const;
  /// The chosen one; none where the module does not have both.
  [[nodiscard]] std::optional<PanelKind> panel() const;
  [[nodiscard]] QRect itemPlace() const;
  void clickItem();
  void openMenu();
  void setPanel(PanelKind panel);
  void focusPanel();
  void refreshed();
  void makePreferences();

  ModuleSession& session_;
  const Texts& texts_;
  Theme& theme_;
  HostSettings settings_;
  const std::int64_t interval_;  ///< in milliseconds
  const bool panelAtStart_;
  MainLoop loop_;
  std::unique_ptr<ItemMenu> menu_;
  std::unique_ptr<BarWindow> bar_;
  std::unique_ptr<TrayItem> tray_;
  std::unique_ptr<PanelWindow> panel_;  ///< null where the module has none
  std::unique_ptr<WidgetWindow> widget_;
  std::unique_ptr<ProcessEnder> ender_;
  ProcessDescription description_;
  std::unique_ptr<GeneralPage> general_;
  std::unique_ptr<PreferencesWindow> preferences_;
};

}  // namespace vel
