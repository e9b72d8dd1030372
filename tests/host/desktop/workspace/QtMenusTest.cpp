// A menu of the module's as Qt shows it.
#include "host/desktop/menus/QtMenus.h"

#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QPixmap>
#include <QTemporaryDir>
#include <QTextDocument>
#include <array>
#include <string>
#include <utility>
#include <vector>

namespace vel::test {
namespace {

class QtMenus : public testing::Test {
 protected:
  static QApplication& application() {
    static int count = 1;
    static std::string name = "test";
    static std::array<char*, 2> arguments = {name.data(), nullptr};
    static QApplication application(count, arguments.data());
    return application;
  }

  QApplication& application_ = application();
};

TEST_F(QtMenus, ShowTextsAsTheyAre) {
  struct Case {
    const char* text;
    QString label;
    QString tip;
  };
  const std::vector<Case> cases = {
      {"Terminal", "Terminal", "Terminal"},
      {"R&D & more", "R&&D && more", "R&D & more"},
      {"a\tb\nc", "a b c", "a b c"},
      {"<b>bold</b> %1", "<b>bold</b> %1", "<b>bold</b> %1"},
  };
  for (const auto& [text, label, tip] : cases) {
    SCOPED_TRACE(text);
    Menu menu;
    MenuItem item;
    item.title = item.toolTip = text;
    menu.addItem(item);
    QMenu target;
    appendMenu(target, menu);
    const QAction& action = *target.actions().front();
    EXPECT_EQ(action.text(), label);
    QTextDocument shown;
    if (Qt::mightBeRichText(action.toolTip())) {
      shown.setHtml(action.toolTip());
    } else {
      shown.setPlainText(action.toolTip());
    }
    EXPECT_EQ(shown.toPlainText(), tip);
    EXPECT_TRUE(target.toolTipsVisible());
  }
}

TEST_F(QtMenus, MapKeyEquivalents) {
  const std::vector<std::pair<const char*, QKeySequence>> cases = {
      {"", {}},
      {"k", Qt::CTRL | Qt::Key_K},
      {"K", Qt::CTRL | Qt::SHIFT | Qt::Key_K},
      {",", Qt::CTRL | Qt::Key_Comma},
      {"kk", {}},
  };
  for (const auto& [key, expected] : cases) {
    SCOPED_TRACE(key);
    Menu menu;
    MenuItem item;
    item.keyEquivalent = key;
    menu.addItem(item);
    QMenu target;
    appendMenu(target, menu);
    EXPECT_EQ(target.actions().front()->shortcut(), expected);
  }
}

TEST_F(QtMenus, AppendActionsThatOutliveTheMenu) {
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
  EXPECT_FALSE(actions[3]->isEnabled());
  EXPECT_EQ(actions[3]->data().toLongLong(), -1);
}

}  // namespace
}  // namespace vel::test
