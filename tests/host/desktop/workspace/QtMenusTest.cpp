// A menu of the module's as Qt shows it.
#include "host/desktop/menus/QtMenus.h"

#include <gtest/gtest.h>

#include <QPixmap>
#include <QTemporaryDir>
#include <tuple>
#include <vector>

namespace vel::test {
namespace {

TEST(QtMenus, ShowTextsAsTheyAreAndMapKeyEquivalents) {
  // The module's text, Qt's label and tool tip; the key equivalent and the shortcut.
  const std::tuple<const char*, const char*, const char*, const char*, QKeySequence> cases[] = {
      {"R&D & more", "R&&D && more", "R&D & more", "k", Qt::CTRL | Qt::Key_K},
      {"a\tb\nc", "a b c", "a b c", "K", Qt::CTRL | Qt::SHIFT | Qt::Key_K},
      {"<b>%1", "<b>%1", "<p>&lt;b&gt;%1</p>", ",", Qt::CTRL | Qt::Key_Comma},
      {"Terminal", "Terminal", "Terminal", "kk", {}},
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

TEST(QtMenus, AppendActionsThatOutliveTheMenu) {
  const QTemporaryDir directory;
  const QString file = directory.filePath("icon.png");
  QPixmap red(16, 16);
  red.fill(Qt::red);
  ASSERT_TRUE(red.save(file));

  std::vector<std::int64_t> chosen;
  QMenu target;
  target.addAction("before");
  {
    Menu menu;
    MenuItem item;
    menu.addItem(item);
    item.action = [&](const MenuItem& sender) { chosen.push_back(sender.tag); };
    item.tag = 7;
    menu.addItem(item);
    item.tag = -1;
    item.mixedStateImage = Image{file.toStdString()};
    item.enabled = false;
    menu.addItem(item);
    appendMenu(target, menu);
  }
  const QList<QAction*> actions = target.actions();
  ASSERT_EQ(actions.size(), 4);
  for (QAction* action : actions) {
    action->trigger();
  }
  EXPECT_EQ(chosen, std::vector<std::int64_t>{7});
  EXPECT_TRUE(actions[2]->icon().isNull());
  EXPECT_EQ(actions[3]->icon().pixmap(16).toImage().pixelColor(8, 8), QColor(Qt::red));
  EXPECT_EQ(actions[3]->data().toLongLong(), -1);
}

}  // namespace
}  // namespace vel::test
