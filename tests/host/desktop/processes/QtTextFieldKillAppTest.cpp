// The name of a process under a user's hand.
#include "host/desktop/kit/QtTextFieldKillApp.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QApplication>
#include <QContextMenuEvent>
#include <QHelpEvent>
#include <QTest>
#include <QTextDocument>
#include <QToolTip>

#include "host/BootTime.h"

namespace vel::test {

struct KillApp : testing::Test {
  KillApp() {
    window.show();
    window.activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
  }

  template <typename Event, typename... Arguments>
  void send(Arguments... arguments) {
    Event event(arguments...);
    QApplication::sendEvent(&label, &event);
  }

  std::vector<EndRequest> requests;
  int questions = 0;
  QWidget window;
  ProcessLabel label{&window};
  QtTextFieldKillApp field{label,
                           [this](const EndRequest& request) { requests.push_back(request); },
                           [this](std::int64_t pid) {
                             ++questions;
                             return QStringLiteral("Process: %1\n<i>x</i>").arg(pid);
                           }};
};

TEST_F(KillApp, AsksToEndWhatItNames) {
  using Menu = QContextMenuEvent;
  const std::function<void()> ways[] = {
      [&] { QTest::mouseClick(&label, Qt::LeftButton); },
      [&] { QTest::keyClick(&label, Qt::Key_Return); },
      [&] { send<Menu>(Menu::Mouse, QPoint(1, 1), label.mapToGlobal(QPoint(1, 1))); },
      [&] { send<Menu>(Menu::Keyboard, QPoint(), QPoint()); },
  };
  const struct {
    const char* name;
    std::int64_t pid;
    bool isProcess;
  } cases[] = {{"-", 7, false}, {"a\xff<b>&\n", 8, true}, {"sleep", -7, false}, {"", 7, false}};
  for (const auto& [name, pid, isProcess] : cases) {
    SCOPED_TRACE(testing::Message() << name << ' ' << pid);
    field.setStringValue(name);
    const auto before = bootTime();
    field.setPID(pid);
    const auto after = bootTime();
    EXPECT_EQ(label.focusPolicy() != Qt::NoFocus, isProcess);
    EXPECT_EQ(label.cursor().shape() == Qt::PointingHandCursor, isProcess);
    for (const auto& way : ways) {
      requests.clear();
      way();
      ASSERT_EQ(requests.size(), isProcess ? 1 : 0);
      for (const EndRequest& request : requests) {
        EXPECT_EQ(request.name, name);
        EXPECT_EQ(request.pid, pid);
        EXPECT_TRUE(before <= request.shownAt && request.shownAt <= after);
        EXPECT_TRUE(label.rect().contains(label.mapFromGlobal(request.position)));
      }
    }
  }
}

TEST_F(KillApp, TellsMoreOnlyWhenAsked) {
  const auto description = [this] {
    return QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Description);
  };
  field.setStringValue("a whole <b>name</b>");
  EXPECT_EQ(description(), "");
  field.setPID(8);
  field.setStringValue("a whole <b>name</b>");
  EXPECT_EQ(questions, 0);
  EXPECT_EQ(description(), "Process: 8\n<i>x</i>");
  send<QHelpEvent>(QEvent::ToolTip, QPoint(1, 1), label.mapToGlobal(QPoint(1, 1)));
  QTextDocument shown;
  shown.setHtml(QToolTip::text());
  EXPECT_EQ(shown.toPlainText(), "a whole <b>name</b>\nProcess: 8\n<i>x</i>");
  EXPECT_EQ(questions, 2);
}

}  // namespace vel::test
