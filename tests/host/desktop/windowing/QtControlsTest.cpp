// The controls under a user's hand, and under the program's.
#include "host/desktop/windowing/QtControls.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QPointF>
#include <QTest>
#include <QWheelEvent>
#include <utility>

#include "support/NibInBundle.h"
#include "host/desktop/windowing/WidgetViews.h"

namespace vel::test {

/// Two cells stand in the matrix itself, one deeper.
const std::string settings = uiWith(R"(<layout class="QVBoxLayout">
  <item><widget class="QCheckBox" name="box"/></item>
  <item><widget class="Matrix" name="matrix"><layout class="QVBoxLayout">
    <item><widget class="QRadioButton" name="cell10">
      <property name="tag" stdset="0"><number>10</number></property></widget></item>
    <item><widget class="QRadioButton" name="cell20">
      <property name="tag" stdset="0"><number>20</number></property></widget></item>
    <item><widget class="QGroupBox" name="inner"><layout class="QVBoxLayout">
      <item><widget class="QRadioButton" name="cell-1">
        <property name="tag" stdset="0"><number>-1</number></property></widget></item>
    </layout></widget></item>
  </layout></widget></item>
  <item><widget class="QComboBox" name="popUp">
    <property name="tags" stdset="0">
      <stringlist><string>7</string><string>-5000000000</string><string>0</string></stringlist>
    </property>
    <item><property name="text"><string>seven</string></property></item>
    <item><property name="text"><string>minus</string></property></item>
    <item><property name="text"><string>zero</string></property></item>
  </widget></item>
</layout>)");

class QtControls : public testing::Test {
 protected:
  void SetUp() override {
    EXPECT_EQ(bundle_.problems, std::vector<std::string>());
    for (Control* control : {static_cast<Control*>(box_), static_cast<Control*>(matrix_),
                             static_cast<Control*>(popUp_)}) {
      control->setAction([this] { ++actions_; });
    }
    QWidget& window = widget("view");
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
  }

  QWidget& widget(const char* name) { return *widgetOf(nib_->outlet<View>(name)); }

  /// How many actions there have been since the last question.
  int actions() { return std::exchange(actions_, 0); }

  NibInBundle bundle_;
  std::unique_ptr<Nib> nib_ = bundle_.load(settings);
  Button* box_ = nib_->outlet<Button>("box");
  Matrix* matrix_ = nib_->outlet<Matrix>("matrix");
  PopUpButton* popUp_ = nib_->outlet<PopUpButton>("popUp");
  int actions_ = 0;
};

TEST_F(QtControls, Button) {
  EXPECT_EQ(box_->controlClass(), ControlClass::button);
  for (const std::int64_t state : {1, 0, -1, 0, 256}) {
    box_->setState(state);
    EXPECT_EQ(box_->state(), state == 0 ? 0 : 1);
  }
  EXPECT_EQ(actions(), 0);
  // An action sees the new state, and may set another action.
  box_->setAction([this] {
    EXPECT_EQ(box_->state(), 0);
    box_->setAction([this] { actions_ += 10; });
    ++actions_;
  });
  QTest::mouseClick(&widget("box"), Qt::LeftButton, {}, QPoint(5, widget("box").height() / 2));
  EXPECT_EQ(actions(), 1);
  QTest::keyClick(&widget("box"), Qt::Key_Space);
  EXPECT_EQ(actions(), 10);
  EXPECT_EQ(box_->state(), 1);
}

TEST_F(QtControls, MatrixByTheProgram) {
  EXPECT_EQ(matrix_->controlClass(), ControlClass::matrix);
  EXPECT_EQ(matrix_->selectedTag(), std::nullopt);
  for (const std::int64_t tag : {10, -1, 20}) {
    SCOPED_TRACE(tag);
    matrix_->selectCellWithTag(tag);
    EXPECT_EQ(matrix_->selectedTag(), tag);
    matrix_->selectCellWithTag(99);
    EXPECT_EQ(matrix_->selectedTag(), tag);
    int checked = 0;
    for (const QRadioButton* cell : widget("matrix").findChildren<QRadioButton*>()) {
      checked += cell->isChecked() ? 1 : 0;
    }
    EXPECT_EQ(checked, 1);
  }
  for (int i = 0; i < 2; ++i) {
    matrix_->deselectAllCells();
    EXPECT_EQ(matrix_->selectedTag(), std::nullopt);
  }
  matrix_->selectCellWithTag(10);
  EXPECT_EQ(matrix_->selectedTag(), 10);
  EXPECT_EQ(actions(), 0);
}

TEST_F(QtControls, MatrixByTheUser) {
  struct Step {
    const char* widget;
    Qt::Key key;  ///< a click of the mouse if 0
    std::int64_t selected;
  };
  constexpr auto kClick = Qt::Key(0);
  const std::vector<Step> steps = {
      {"cell20", kClick, 20},        {"cell-1", kClick, -1},       {"cell10", kClick, 10},
      {"cell10", Qt::Key_Down, 20},  {"cell20", Qt::Key_Down, -1}, {"cell-1", Qt::Key_Up, 20},
      {"cell10", Qt::Key_Space, 10},
  };
  matrix_->selectCellWithTag(10);
  matrix_->deselectAllCells();
  for (const Step& step : steps) {
    SCOPED_TRACE(std::string(step.widget) + " " + std::to_string(step.key));
    QWidget& cell = widget(step.widget);
    if (step.key == kClick) {
      QTest::mouseClick(&cell, Qt::LeftButton, {}, QPoint(5, cell.height() / 2));
    } else {
      cell.setFocus();
      QTest::keyClick(&cell, step.key);
    }
    EXPECT_EQ(matrix_->selectedTag(), step.selected);
    EXPECT_EQ(actions(), 1);
  }
}

TEST_F(QtControls, PopUpButton) {
  EXPECT_EQ(popUp_->controlClass(), ControlClass::popUpButton);
  EXPECT_EQ(popUp_->selectedTag(), 7);
  for (const std::int64_t tag : {std::int64_t{-5000000000}, std::int64_t{0}}) {
    popUp_->selectItemWithTag(tag);
    EXPECT_EQ(popUp_->selectedTag(), tag);
    popUp_->selectItemWithTag(99);
    EXPECT_EQ(popUp_->selectedTag(), tag);
  }
  auto& comboBox = dynamic_cast<QComboBox&>(widget("popUp"));
  comboBox.setCurrentIndex(-1);
  EXPECT_EQ(popUp_->selectedTag(), std::nullopt);
  EXPECT_EQ(actions(), 0);

  QTest::keyClick(&comboBox, Qt::Key_Down);
  EXPECT_EQ(popUp_->selectedTag(), 7);
  EXPECT_EQ(actions(), 1);
}

TEST_F(QtControls, WheelChangesThePopUpWithFocusOnly) {
  QWidget& comboBox = widget("popUp");
  const auto roll = [&] {
    const QPointF place = comboBox.rect().center();
    QWheelEvent event(place, comboBox.mapToGlobal(place), {}, {0, -120}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&comboBox, &event);
    return event.isAccepted();
  };
  widget("box").setFocus();
  EXPECT_FALSE(roll());
  EXPECT_FALSE(comboBox.hasFocus());
  EXPECT_EQ(popUp_->selectedTag(), 7);
  EXPECT_EQ(actions(), 0);
  comboBox.setFocus();
  EXPECT_TRUE(roll());
  EXPECT_EQ(popUp_->selectedTag(), -5000000000);
  EXPECT_EQ(actions(), 1);
}

}  // namespace vel::test
