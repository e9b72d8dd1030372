// The controls under a user's hand, and under the program's.
#include "host/desktop/windowing/QtControls.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointF>
#include <QTest>
#include <QWheelEvent>
#include <utility>

#include "host/desktop/windowing/WidgetViews.h"
#include "support/NibInBundle.h"

namespace vel::test {

std::string cell(const std::string& tag) {
  return R"(<item><widget class="QRadioButton" name="cell)" + tag +
         R"("><property name="tag" stdset="0"><number>)" + tag +
         "</number></property></widget></item>";
}

/// Two cells stand in the matrix itself, one deeper.
const std::string settings =
    uiWith(R"(<layout class="QVBoxLayout">
  <item><widget class="QCheckBox" name="box"/></item>
  <item><widget class="Matrix" name="matrix"><layout class="QVBoxLayout">)" +
           cell("10") + cell("20") +
           R"(<item><widget class="QGroupBox" name="inner"><layout class="QVBoxLayout">)" +
           cell("-1") + R"(
  </layout></widget></item></layout></widget></item>
  <item><widget class="QComboBox" name="popUp">
    <property name="tags" stdset="0">
      <stringlist><string>7</string><string>-5000000000</string><string>0</string></stringlist>
    </property><item/><item/><item/>
  </widget></item>
</layout>)");

struct QtControls : testing::Test {
  QtControls() {
    EXPECT_EQ(bundle.problems, std::vector<std::string>());
    for (const auto& [control, controlClass] :
         {std::pair<Control*, ControlClass>{box, ControlClass::button},
          {matrix, ControlClass::matrix},
          {popUp, ControlClass::popUpButton}}) {
      EXPECT_EQ(control->controlClass(), controlClass);
      control->setAction([this] { ++count; });
    }
    widget("view").show();
    widget("view").activateWindow();
    EXPECT_TRUE(QTest::qWaitForWindowActive(&widget("view")));
  }

  QWidget& widget(const char* name) const { return *widgetOf(nib->outlet<View>(name)); }

  void click(const char* name) const {
    QTest::mouseClick(&widget(name), Qt::LeftButton, {}, {5, widget(name).height() / 2});
  }

  /// How many actions there have been since the last question.
  int actions() { return std::exchange(count, 0); }

  NibInBundle bundle;
  std::unique_ptr<Nib> nib = bundle.load(settings);
  Button* box = nib->outlet<Button>("box");
  Matrix* matrix = nib->outlet<Matrix>("matrix");
  PopUpButton* popUp = nib->outlet<PopUpButton>("popUp");
  int count = 0;
};

TEST_F(QtControls, ActAtTheUserNotTheProgram) {
  for (const std::int64_t state : {1, 0, -1, 0, 256}) {
    box->setState(state);
    EXPECT_EQ(box->state(), state == 0 ? 0 : 1);
  }
  EXPECT_EQ(popUp->selectedTag(), 7);
  const std::pair<std::int64_t, std::int64_t> tags[] = {{10, -5000000000}, {-1, 0}, {20, 0}};
  for (const auto& [cell, item] : tags) {
    EXPECT_EQ(matrix->selectedTag(), std::nullopt);
    for (const auto& [c, i] : {std::pair{cell, item}, {99, 99}}) {
      matrix->selectCellWithTag(c);
      popUp->selectItemWithTag(i);
      EXPECT_EQ(matrix->selectedTag(), cell);
      EXPECT_EQ(popUp->selectedTag(), item);
    }
    matrix->deselectAllCells();
  }
  auto& comboBox = dynamic_cast<QComboBox&>(widget("popUp"));
  comboBox.setCurrentIndex(-1);
  EXPECT_EQ(popUp->selectedTag(), std::nullopt);
  EXPECT_EQ(actions(), 0);

  QTest::keyClick(&comboBox, Qt::Key_Down);
  EXPECT_EQ(popUp->selectedTag(), 7);
  EXPECT_EQ(actions(), 1);
  for (const auto& [name, tag] : {std::pair{"cell20", 20}, {"cell-1", -1}, {"cell10", 10}}) {
    click(name);
    EXPECT_EQ(matrix->selectedTag(), tag);
    EXPECT_EQ(actions(), 1);
  }
  widget("cell10").setFocus();
  QTest::keyClick(&widget("cell10"), Qt::Key_Down);
  EXPECT_EQ(matrix->selectedTag(), 20);
  EXPECT_EQ(actions(), 1);
  // An action sees the new state, and may set another action.
  box->setAction([this] {
    EXPECT_EQ(box->state(), 0);
    box->setAction([this] { count += 10; });
    ++count;
  });
  click("box");
  EXPECT_EQ(actions(), 1);
  QTest::keyClick(&widget("box"), Qt::Key_Space);
  EXPECT_EQ(actions(), 10);
}

TEST_F(QtControls, WheelChangesThePopUpWithFocusOnly) {
  QWidget& comboBox = widget("popUp");
  for (const bool focused : {false, true}) {
    SCOPED_TRACE(focused);
    widget(focused ? "popUp" : "box").setFocus();
    const QPointF place = comboBox.rect().center();
    QWheelEvent roll(place, comboBox.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {},
                     Qt::NoScrollPhase, false);
    QApplication::sendEvent(&comboBox, &roll);
    EXPECT_EQ(roll.isAccepted(), focused);
    EXPECT_EQ(comboBox.hasFocus(), focused);
    EXPECT_EQ(popUp->selectedTag(), focused ? -5000000000 : 7);
    EXPECT_EQ(actions(), focused ? 1 : 0);
  }
}

}  // namespace vel::test
