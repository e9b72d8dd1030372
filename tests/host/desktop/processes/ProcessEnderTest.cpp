// What the user is asked before processes are ended, and told of them and of what comes of it.
#include "host/desktop/processes/ProcessEnder.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPushButton>
#include <QRegularExpression>
#include <QTest>
#include <memory>

#include "host/BootTime.h"
#include "host/desktop/processes/ProcessDescription.h"
#include "support/Family.h"

namespace vel::test {

struct EnderTest : testing::Test {
  void offer() { offer(ender); }
  void offer(ProcessEnder& by) const {
    // Shown a moment after everything that has been started so far.
    by.offer({family->pid(), kName, bootTime() + std::chrono::seconds(1), QPoint(10, 10)});
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
    return QStringLiteral("“<b>x</b> &a %2” (process %1").arg(family->pid());
  }

  static constexpr const char* kName = "<b>x</b> &a %2";
  std::unique_ptr<Family> family = std::make_unique<Family>(kName);
  LinuxKernel kernel;
  Texts texts{nullptr};
  std::vector<bool> asking;
  ProcessEnder ender{kernel, texts, [this](bool is) { asking.push_back(is); }};
};

TEST_F(EnderTest, EndsNothingUnasked) {
  for (const int others : {0, 1, 2}) {
    SCOPED_TRACE(others);
    for (const int index : {2, 3}) {
      SCOPED_TRACE(index);
      offer();
      const QString verb = index == 2 ? "End" : "Force";
      const QString pid = QString::number(family->pid());
      const QString headings[] = {"<b>x</b> &&a %2 (" + pid + ")",
                                  "<b>x</b> &&a %2 (" + pid + ") and the process it started",
                                  "<b>x</b> &&a %2 (" + pid + ") and the 2 processes it started"};
      const QString questions[] = {verb + ' ' + named() + " of ",
                                   verb + " “<b>x</b> &a %2” and the process it started",
                                   verb + " “<b>x</b> &a %2” and the 2 processes it started"};
      EXPECT_EQ(menu()->actions()[0]->text(), headings[others]);
      EXPECT_FALSE(menu()->actions()[0]->isEnabled());
      QMessageBox* question = choose(index);
      EXPECT_TRUE(question->text().startsWith(questions[others])) << question->text().toStdString();
      EXPECT_EQ(question->textFormat(), Qt::PlainText);
      EXPECT_FALSE(question->informativeText().isEmpty());
      EXPECT_EQ(question->defaultButton()->text(), "&Cancel");
      EXPECT_EQ(asking.back(), true);
      EXPECT_FALSE(question->isModal());
      QTest::keyClick(question, Qt::Key_Escape);
      awaitEnd();
    }
    family->startAnother();
  }
  offer();
  menu()->hide();
  awaitEnd();
  EXPECT_TRUE(family->lives(0) && family->lives(1));
}

TEST_F(EnderTest, EndsWhatIsConfirmedAndAsksAgainAboutTheRest) {
  family->startAnother();
  offer();
  choose(2);
  family->startAnother();
  click("&End");
  EXPECT_TRUE(family->hasEnded(0) && family->hasEnded(1));
  EXPECT_TRUE(QTest::qWaitFor([] { return box() != nullptr; }));
  EXPECT_EQ(box()->text(),
            "“<b>x</b> &a %2” has started another process meanwhile. End it as well?");
  EXPECT_TRUE(family->lives(2));
  click("&End");
  EXPECT_TRUE(family->hasEnded(2));
  awaitEnd();
}

TEST_F(EnderTest, TellsWhatCannotBeDone) {
  const auto told = [this](const QString& what) {
    ASSERT_NE(box(), nullptr);
    EXPECT_EQ(box()->text(), what);
    EXPECT_EQ(box()->textFormat(), Qt::PlainText);
    click("Clos&e");
    awaitEnd();
  };
  LinuxKernel foreign("/nonexistent", "/nonexistent");
  ProcessEnder foreignEnder(foreign, texts, [this](bool is) { asking.push_back(is); });
  offer(foreignEnder);
  EXPECT_EQ(menu(), nullptr);
  told(named() + ") runs on another system or in another container and cannot be ended from here.");
  offer();
  choose(3);
  ::kill(family->pid(), SIGKILL);
  EXPECT_TRUE(family->hasEnded(0));
  click("&Force End");
  told(named() + ") has ended already.");
  offer();
  told(named() + ") has ended already.");
}

TEST_F(EnderTest, FailuresAreNamedUpToThree) {
  const EndWords words([](const char* key) { return std::string(key); });
  std::vector<EndableApplication::Failure> failures(3, {"%1", 7, EndProblem::notPermitted});
  const std::string line = "You are not permitted to end “%1” (process 7).";
  EXPECT_EQ(words.failures(failures), (std::vector<std::string>{line, line, line}));
  failures.resize(5);
  EXPECT_EQ(words.failures(failures), (std::vector<std::string>{line, line, line, "and 2 more"}));
}

TEST_F(EnderTest, DescribesARow) {
  const Family shell([] {
    const std::string argument =
        std::string(60, 'x') + "\n\x1b\xe2\x80\xae" + std::string(200, 'y');
    ::execlp("sh", "<b>sh", "-c", "kill -STOP $$", argument.c_str(), nullptr);
  });
  const std::string pid = std::to_string(shell.pid());
  ProcessDetails details(kernel.processDirectory());
  while (shell.lives(0) && !details.commandLine(shell.pid()).starts_with("<b>")) {
  }
  CPUData record;
  record.setTopMemProcess({{"sh", "1", "0"}, {"sh", pid, "0", 0.0F, 14}});
  ProcessDescription description(kernel, record, texts);
  const QString text = description.of(shell.pid());
  const QRegularExpression form("^Process: " + QString::fromStdString(pid) +
                                "\nProcesses in all: 14\nUser: \\S+\nRunning since: .*\\d.*\n"
                                "Command: (<b>sh -c kill -STOP \\$\\$ x{60}\uFFFD{3}y+…)$");
  const auto match = form.match(text);
  EXPECT_TRUE(match.hasMatch()) << text.toStdString();
  EXPECT_EQ(match.captured(1).size(), 201);
  EXPECT_EQ(description.of(-1), "");
}

}  // namespace vel::test
