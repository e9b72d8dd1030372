#include "host/desktop/menus/QtMenus.h"

#include <QAction>
#include <QIcon>
#include <QKeySequence>
#include <QTextDocument>

namespace vel {
namespace {

/// A tab would start the column of shortcuts, a single ampersand the mnemonic.
QString actionText(const std::string& title) {
  return QString::fromStdString(title).simplified().replace(u'&', QStringLiteral("&&"));
}

/// QToolTip takes for rich text what looks like it.
QString toolTipText(const std::string& text) {
  const QString plain = QString::fromStdString(text).simplified();
  return Qt::mightBeRichText(plain) ? Qt::convertFromPlainText(plain) : plain;
}

QIcon iconOf(const Image& image) {
  const QString name = QString::fromStdString(image.name);
  return name.startsWith(u'/') ? QIcon(name) : QIcon::fromTheme(name);
}

QKeySequence shortcutOf(const std::string& keyEquivalent) {
  const auto characters = QString::fromStdString(keyEquivalent).toUcs4();
  if (characters.size() != 1) {
    return {};
  }
  const char32_t character = characters.front();
  Qt::KeyboardModifiers modifiers = Qt::ControlModifier;
  modifiers.setFlag(Qt::ShiftModifier, QChar::isUpper(character));
  return QKeyCombination(modifiers, Qt::Key(QChar::toUpper(character)));
}

}  // namespace

void appendMenu(QMenu& target, const Menu& menu) {
  target.setToolTipsVisible(true);
  for (const MenuItem& item : menu.items()) {
    QAction* action = target.addAction(actionText(item.title));
    if (item.mixedStateImage) {
      action->setIcon(iconOf(*item.mixedStateImage));
    }
    action->setEnabled(item.enabled);
    action->setToolTip(toolTipText(item.toolTip));
    action->setShortcut(shortcutOf(item.keyEquivalent));
    action->setData(qlonglong(item.tag));
    if (item.action) {
      QObject::connect(action, &QAction::triggered, action, [item] { item.action(item); });
    }
  }
}

}  // namespace vel
