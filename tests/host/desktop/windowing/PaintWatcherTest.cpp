// When a view tells that it has been drawn.
#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>
#include <vector>

#include "host/desktop/windowing/QtView.h"

namespace vel::test {

TEST(PaintWatcher, TellsAfterEachPaintingAndBearsWhatTheFunctionDoes) {
  struct : QWidget {
    void paintEvent(QPaintEvent* /*event*/) override { ++paintings; }
    int paintings = 0;
  } widget;
  QtView<View> view(widget);
  int told = 0;
  view.setDidDraw([&](DrawingContext&) {
    EXPECT_EQ(widget.paintings, ++told);
    if (told == 2) {
      view.setNeedsDisplay();
    }
  });
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  ASSERT_EQ(told, 1);
  view.setNeedsDisplay();
  EXPECT_TRUE(QTest::qWaitFor([&] { return told == 3; }));  // 2 asked for another one

  view.setDidDraw([&](DrawingContext&) {
    const std::vector<int> kept(1000, ++told);
    widget.repaint();
    view.setDidDraw([&told, kept](DrawingContext&) { told += kept.front(); });
    ++told;
  });
  view.setNeedsDisplay();
  EXPECT_TRUE(QTest::qWaitFor([&] { return told == 5; }));
  widget.repaint();
  EXPECT_EQ(told, 9);
  view.setDidDraw({});
  widget.repaint();
  EXPECT_EQ(told, 9);
  EXPECT_EQ(widget.paintings, 7);
}

}  // namespace vel::test
