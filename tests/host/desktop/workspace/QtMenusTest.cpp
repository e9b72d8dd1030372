// A menu of the module's as Qt shows it.
#include "host/desktop/menus/QtMenus.h"

#include <gtest/gtest.h>

#include <tuple>

namespace vel::test {
namespace {

TEST(QtMenus, ShowTextsAsTheyAreAndMapKeyEquivalents) {
  // The module's text, Qt's label and tool tip; the key equivalent and the shortcut.
  const std::tuple<const char*, const char*, const char*, const char*, QKeySequence> cases[] = {
      {"R&D & more", "R&&D && more", "R&D & more", "k", Qt::CTRL | Qt::Key_K},
      {"a\tb\nc", "a b c", "a b c", "K", Qt::CTRL | Qt::SHIFT | Qt::Key_K},
      {"<b>%1", "<b>%1", "<p>&lt;b&gt;%1</p>", ",", Qt::CTRL | Qt::Key_Comma},
  };
  for (const auto& [text, label, tip, key, shortcut] : cases) {
    SCOPED_TRACE(text);
    MenuItem item;
    item.title = item.toolTip = text;
    item.keyEquivalent = key;
    Menu menu;
    menu.addItem(item);
    QMenu target;
    appendMenu(target, menu);
    const QAction& action = *target.actions().front();
    EXPECT_EQ(action.text(), label);
    EXPECT_EQ(action.shortcut(), shortcut);
    EXPECT_TRUE(target.toolTipsVisible());
    EXPECT_EQ(action.toolTip().toStdString(), tip);
  }
}

}  // namespace
}  // namespace vel::test
