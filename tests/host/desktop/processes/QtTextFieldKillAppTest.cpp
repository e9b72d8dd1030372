// The name of a process under a user's hand.
#include "host/desktop/kit/QtTextFieldKillApp.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QContextMenuEvent>
#include <QTest>

#include "host/desktop/kit/BootTime.h"

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
  QWidget window;
  ProcessLabel label{&window};
  QtTextFieldKillApp field{label,
                           [this](const EndRequest& request) { requests.push_back(request); }};
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

}  // namespace vel::test
