// What the user is asked before a process is ended, and told of what comes of it.
#include "host/desktop/processes/ProcessEnder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QTest>

#include "host/desktop/kit/BootTime.h"
#include "support/Child.h"

namespace vel::test {

struct EnderTest : testing::Test {
  void offer(bool isOfThisHost = true) {
    // Shown a moment after everything that has been started so far.
    ender.offer({child.pid(), kName, bootTime() + std::chrono::seconds(1), QPoint(10, 10)},
                isOfThisHost);
  }

  static QMenu* menu() { return dynamic_cast<QMenu*>(QApplication::activePopupWidget()); }

  /// The one that is open.
  static QMessageBox* box() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
      if (auto* box = dynamic_cast<QMessageBox*>(widget); box != nullptr && box->isVisible()) {
        return box;
      }
    }
    return nullptr;
  }

  /// Chooses "End…" (2) or "Force End…" (3), below the heading and a line.
  static QMessageBox* choose(int index) {
    QMenu& open = *menu();
    open.setActiveAction(open.actions()[index]);
    QTest::keyClick(&open, Qt::Key_Return);
    return box();
  }

  static void click(const char* text) {
    for (QAbstractButton* button : box()->buttons()) {
      if (button->text() == text) {
        return QTest::mouseClick(button, Qt::LeftButton);
      }
    }
    ADD_FAILURE() << "no button " << text;
  }

  void awaitEnd() const {
    EXPECT_TRUE(QTest::qWaitFor([&] { return !asking.back(); }));
    EXPECT_EQ(box(), nullptr);
  }

  [[nodiscard]] QString named() const {
    return QStringLiteral("“<b>x</b> &a %2” (process %1").arg(child.pid());
  }

  static constexpr const char* kName = "<b>x</b> &a %2";
  Child child{kName};
  Texts texts{nullptr};
  std::vector<bool> asking;
  ProcessEnder ender{texts, [this](bool is) { asking.push_back(is); }};
};

TEST_F(EnderTest, EndsNothingUnasked) {
  offer();
  ASSERT_NE(menu(), nullptr);
  const QAction& heading = *menu()->actions()[0];
  EXPECT_EQ(heading.text(), QStringLiteral("<b>x</b> &&a %2 (%1)").arg(child.pid()));
  EXPECT_FALSE(heading.isEnabled());
  for (const int index : {2, 3}) {
    SCOPED_TRACE(index);
    offer();
    QMessageBox* question = choose(index);
    EXPECT_TRUE(question->text().contains(named() + " of ")) << question->text().toStdString();
    EXPECT_FALSE(question->informativeText().isEmpty());
    EXPECT_EQ(question->defaultButton()->text(), "&Cancel");
    EXPECT_EQ(asking.back(), true);
    EXPECT_FALSE(question->isModal());
    QTest::keyClick(question, Qt::Key_Escape);
    awaitEnd();
  }
  offer();
  menu()->hide();
  awaitEnd();
  EXPECT_TRUE(child.isAlive());
}

TEST_F(EnderTest, EndsWhatIsConfirmed) {
  offer();
  choose(2);
  click("&End");
  EXPECT_EQ(child.reap(), SIGTERM);
  awaitEnd();
}

TEST_F(EnderTest, TellsWhatCannotBeDone) {
  const auto told = [this](const char* what) {
    ASSERT_NE(box(), nullptr);
    EXPECT_EQ(box()->text(), named() + what);
    EXPECT_EQ(box()->textFormat(), Qt::PlainText);
    click("Clos&e");
    awaitEnd();
  };
  offer(false);
  EXPECT_EQ(menu(), nullptr);
  told(") runs on another system or in another container and cannot be ended from here.");
  offer();
  choose(3);
  child.kill();
  click("&Force End");
  told(") has ended already.");
  offer();
  told(") has ended already.");
}

}  // namespace vel::test
