// When a view tells that it has been drawn.
#include <gtest/gtest.h>

#include <QTest>
#include <QWidget>
#include <vector>

#include "host/desktop/windowing/QtView.h"

namespace vel::test {

struct PaintedWidget : QWidget {
  int paintings = 0;

 protected:
  void paintEvent(QPaintEvent* /*event*/) override { ++paintings; }
};

TEST(PaintWatcher, TellsAfterEachPainting) {
  PaintedWidget widget;
  QtView<View> view(widget);
  int told = 0;
  view.setDidDraw([&] {
    EXPECT_EQ(widget.paintings, ++told);
    if (told == 2) {
      view.setNeedsDisplay();
    }
  });
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  ASSERT_EQ(told, 1);

  view.setNeedsDisplay();
  EXPECT_TRUE(QTest::qWaitFor([&] { return told >= 3; }));
  EXPECT_EQ(told, 3);  // 2 asked for another one

  view.setDidDraw({});
  widget.repaint();
  EXPECT_EQ(widget.paintings, 4);
  EXPECT_EQ(told, 3);
}

TEST(PaintWatcher, BearsWhatTheFunctionDoes) {
  PaintedWidget widget;
  QtView<View> view(widget);
  int first = 0;
  int second = 0;
  view.setDidDraw([&] {
    const std::vector<int> kept(1000, ++first);
    widget.repaint();
    view.setDidDraw([&second, kept] { second += kept.front(); });
    ++first;
  });
  widget.show();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(&widget));
  EXPECT_EQ(first, 2);
  widget.repaint();
  EXPECT_EQ(first, 2);
  EXPECT_EQ(second, widget.paintings - 2);
}

}  // namespace vel::test
