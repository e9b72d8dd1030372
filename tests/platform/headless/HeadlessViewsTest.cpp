// Controls and widgets under the hands of the user and of the program.
#include <gtest/gtest.h>

#include "platform/headless/HeadlessControls.h"
#include "platform/headless/HeadlessWidgets.h"

namespace vel::test {

TEST(HeadlessControls, ActOnlyForTheUser) {
  int actions = 0;
  const auto count = [&actions] { ++actions; };
  HeadlessButton button;
  HeadlessMatrix matrix;
  HeadlessPopUpButton popUp;
  for (Control* control : std::initializer_list<Control*>{&button, &matrix, &popUp}) {
    control->setAction(count);
  }
  for (TaggedItems* items : {&matrix.items(), &popUp.items()}) {
    items->add({"a", 1});
    items->add({"b", 2});
  }

  button.setState(-7);
  EXPECT_EQ(button.state(), 1);
  matrix.setHidden(true);
  matrix.selectCellWithTag(2);
  EXPECT_EQ(matrix.selectedTag(), 2);
  matrix.selectCellWithTag(3);
  EXPECT_EQ(matrix.selectedTag(), 2);
  matrix.deselectAllCells();
  matrix.selectCellWithTag(3);
  EXPECT_EQ(matrix.selectedTag(), std::nullopt);
  popUp.selectItemWithTag(1);
  popUp.selectItemWithTag(0);
  EXPECT_EQ(popUp.selectedTag(), 1);
  EXPECT_EQ(actions, 0);

  button.click();
  EXPECT_EQ(button.state(), 0);
  matrix.choose(1);
  EXPECT_EQ(matrix.selectedTag(), 1);
  popUp.choose(2);
  EXPECT_EQ(actions, 3);
  popUp.choose(2);  // what is selected already
  EXPECT_EQ(actions, 4);
  popUp.choose(3);
  EXPECT_EQ(popUp.selectedTag(), 2);
  EXPECT_EQ(actions, 4);
}

TEST(HeadlessWidgets, FitTheirWidth) {
  HeadlessMenuBarText text;
  text.setFrameSize({5, 22});
  text.setTextString("5 \u20ac\U0001f600");
  EXPECT_EQ(text.frame().size, (Size{28, 22}));
}

}  // namespace vel::test
