// The menu of the item: the module's own, then the host's.
#pragma once

#include <QMenu>
#include <QPoint>
#include <functional>

#include "host/desktop/Texts.h"
#include "platform/host/ModulePrincipal.h"

namespace vel {

/// Made anew each time it is opened: applications come and go.
class ItemMenu {
 public:
  struct Actions {
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

  const Texts& texts_;
  ModulePrincipal& module_;
  const Actions actions_;
  QMenu menu_;
};

}  // namespace vel
