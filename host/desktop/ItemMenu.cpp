#include "host/desktop/ItemMenu.h"

#include <QAction>
#include <QIcon>
#include <array>
#include <utility>

#include "host/desktop/menus/QtMenus.h"

namespace vel {

ItemMenu::ItemMenu(const Texts& texts, ModulePrincipal& module, Actions actions)
    : texts_(texts), module_(module), actions_(std::move(actions)) {
  QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] { fill(); });
}

void ItemMenu::open(QPoint position) {
  menu_.popup(position);
}

void ItemMenu::fill() {
  menu_.clear();
  for (const auto& menu : {module_.moduleMenuPref(), module_.moduleMenuOption()}) {
    if (menu) {
      appendMenu(menu_, *menu);
      menu_.addSeparator();
    }
  }
  if (const auto panel = actions_.panel()) {
    addPanels(*panel);
    menu_.addSeparator();
  }
  QAction* preferences = menu_.addAction(QIcon::fromTheme(QStringLiteral("preferences-system")),
                                         texts_("&Preferences…"), &menu_, actions_.openPreferences);
  preferences->setShortcut(Qt::CTRL | Qt::Key_Comma);
  QAction* quit = menu_.addAction(QIcon::fromTheme(QStringLiteral("application-exit")),
                                  texts_("&Quit"), &menu_, actions_.quit);
  quit->setShortcut(Qt::CTRL | Qt::Key_Q);
}

void ItemMenu::addPanels(PanelKind chosen) {
  const std::array panels{std::pair{"&Compact Panel", PanelKind::compact},
                          std::pair{"&Expanded Panel", PanelKind::expanded}};
  for (const auto& [text, panel] : panels) {
    QAction* choice =
        menu_.addAction(texts_(text), &menu_, [this, newly = panel] { actions_.setPanel(newly); });
    choice->setCheckable(true);
    choice->setChecked(panel == chosen);
    panels_.addAction(choice);
  }
}

}  // namespace vel
