// The menu of the item: the module's own, then the host's: which panel, the preferences, the end.
#pragma once

#include <QActionGroup>
#include <QMenu>
#include <QPoint>
#include <functional>
#include <optional>

#include "host/HostSettings.h"
#include "host/desktop/Texts.h"
#include "platform/host/ModulePrincipal.h"

namespace vel {

/// Made anew each time it is opened: applications come and go.
class ItemMenu {
 public:
  struct Actions {
    std::function<std::optional<PanelKind>()> panel;  ///< the chosen one, if there is a choice
    std::function<void(PanelKind)> setPanel;
    std::function<void()> openPreferences;
    std::function<void()> quit;
  };

  /// `texts` and `module` outlive the menu.
  ItemMenu(const Texts& texts, ModulePrincipal& module, Actions actions);

  /// At a place on the screen.
  void open(QPoint position);

  [[nodiscard]] QMenu& menu() { return menu_; }

 private:
  void fill();
  void addPanels(PanelKind chosen);

  const Texts& texts_;
  ModulePrincipal& module_;
  const Actions actions_;
  QMenu menu_;
  QActionGroup panels_{&menu_};
};

}  // namespace vel
