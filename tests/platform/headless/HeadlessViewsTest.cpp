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
  popUp.choose(3);
  EXPECT_EQ(popUp.selectedTag(), 2);
  EXPECT_EQ(actions, 3);
}

TEST(HeadlessWidgets, FitTheirWidth) {
  HeadlessGaugeViewMultiple gauges;
  EXPECT_EQ(gauges.frame().size.width, 16);
  gauges.setFrameSize({5, 22});
  gauges.setNumberOfGauges(3);
  EXPECT_EQ(gauges.frame().size, (Size{48, 22}));
  gauges.setGaugeWidth(10);
  EXPECT_EQ(gauges.frame().size, (Size{30, 22}));
  HeadlessMenuBarText text;
  text.setTextString("5 \u20ac\U0001f600");
  EXPECT_EQ(text.frame().size.width, 28);
  text.setWidthOfText([](std::string_view) { return 30; });
  EXPECT_EQ(text.frame().size.width, 30);
  EXPECT_EQ(text.stringValue(), "5 \u20ac\U0001f600");
}

TEST(HeadlessWidgets, AskForDisplayOnChange) {
  HeadlessColor color;
  HeadlessModuleNameStatusBarView name;
  name.setThreeLetterName("CPU");
  name.setThreeLetterName("CPU");
  EXPECT_EQ(name.displayRequests(), 1);
  name.setColorObject(&color);
  color.set(redColor, Color{}, 1);
  EXPECT_EQ(name.displayRequests(), 2);
  name.setColorObject(nullptr);
  color.set(Color{}, Color{}, 0);
  EXPECT_EQ(name.displayRequests(), 2);
}

}  // namespace vel::test
