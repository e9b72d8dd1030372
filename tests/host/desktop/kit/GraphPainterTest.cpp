// What a graph looks like, in pixels.
#include "host/desktop/kit/GraphPainter.h"

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <limits>
#include <vector>

namespace vel::test {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInfinity = std::numeric_limits<float>::infinity();
/// Odd, as is what is left of it at 1.25.
constexpr QRect kPanel(3, 5, 236, 30);

QRect scaled(const QRect& rect, double ratio) {
  return {rect.topLeft() * ratio, rect.size() * ratio};
}

/// Each series with its latest value last.
struct History : VELGraphArraysMultiple {
  explicit History(const std::vector<std::vector<float>>& series) {
    for (std::size_t i = 0; i < series.size(); ++i) {
      for (const float value : series[i]) {
        addNewValueForGraphAtIndex(value, std::int64_t(i));
      }
    }
  }
};

TEST(GraphPicture, EverySeriesHasACellWhereThereIsRoom) {
  const struct {
    QRect area;
    std::size_t number;
    GraphStyle style;
    std::size_t cells;
  } cases[] = {{kPanel, 1, GraphStyle::charts, 1},       {kPanel, 2, GraphStyle::charts, 2},
               {kPanel, 7, GraphStyle::charts, 7},       {kPanel, 16, GraphStyle::charts, 16},
               {kPanel, 24, GraphStyle::charts, 24},     {kPanel, 64, GraphStyle::lanes, 64},
               {kPanel, 97, GraphStyle::lanes, 97},      {kPanel, 256, GraphStyle::lanes, 256},
               {{0, 0, 3, 2}, 1, GraphStyle::charts, 1}, {{0, 0, 3, 2}, 4096, GraphStyle::lanes, 2},
               {{0, 0, 1, 1}, 64, GraphStyle::lanes, 1}, {{}, 1, GraphStyle::charts, 0}};
  const VELGraphArraysMultiple history;
  for (const auto& [area, number, style, cells] : cases) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
      SCOPED_TRACE(testing::Message() << number << " at " << ratio << " in " << area.width());
      GraphPicture picture;
      const QRect place = scaled(area, area == kPanel ? ratio : 1.0);
      picture.layOut(place, ratio, &history, number, 100.0F);
      EXPECT_EQ(picture.cells.size(), cells);
      EXPECT_TRUE(cells == 0 || picture.style == style);
      for (auto cell = picture.cells.begin(); cell != picture.cells.end(); ++cell) {
        EXPECT_TRUE(place.contains(*cell) && !cell->isEmpty());
        EXPECT_TRUE(std::none_of(picture.cells.begin(), cell,
                                 [&](const QRect& other) { return other.intersects(*cell); }));
      }
    }
  }
}

TEST(GraphPicture, ValuesAreAShareOfTheTopNewestFirst) {
  const History history({{kNan, -5.0F, 0.0F, 25.0F, 35.0F, 36.0F, 50.0F, kInfinity}});
  const auto samplesAt = [&](float top, std::size_t number = 1) {
    GraphPicture picture;
    picture.layOut({0, 0, 20, 30}, 1.0, &history, number, top);
    return picture.samples;
  };
  std::vector<GraphPicture::Sample> expected{{30, true},  {30, true}, {22, true}, {21, false},
                                             {15, false}, {0, false}, {0, false}, {0, false}};
  expected.resize(samplesAt(50.0F).size());
  EXPECT_GE(expected.size(), 20U);
  EXPECT_EQ(samplesAt(50.0F), expected);
  EXPECT_EQ(samplesAt(50.0F, 0).size(), 0U);
  EXPECT_EQ(samplesAt(kInfinity)[0].level, 30);
  for (const float top : {0.0F, -1.0F, kNan}) {
    EXPECT_EQ(samplesAt(top).size(), 0U) << top;
  }
}

TEST(GraphPicture, ASharedLaneShowsTheHighest) {
  std::vector<std::vector<float>> series(4096, {10.0F, 10.0F});
  series[series.size() - 2] = {90.0F};
  const History history(series);
  GraphPicture picture;
  picture.layOut(kPanel, 1.0, &history, series.size(), 100.0F);
  ASSERT_LT(picture.cells.size(), series.size());
  const auto last = picture.samples.end() - picture.samplesPerCell;
  EXPECT_TRUE(last->isHigh);
  EXPECT_EQ(std::count_if(picture.samples.begin(), picture.samples.end(),
                          [](const auto& sample) { return sample.isHigh; }),
            1);
  EXPECT_EQ(last[1], picture.samples[1]);
  EXPECT_GT(last[1].level, 0);
  EXPECT_GT(last->level, last[1].level);
}

TEST(GraphPainter, ASeriesShowsAtTheRightEdgeOfItsCellAndNowhereElse) {
  const QPalette palette(Qt::darkGray, Qt::lightGray);
  for (const std::size_t number : {1, 8, 64, 256}) {
    for (const double ratio : {1.0, 1.25, 2.0}) {
      for (const float value : {40.0F, 90.0F}) {
        SCOPED_TRACE(testing::Message() << number << " at " << ratio << ", " << value);
        std::vector<std::vector<float>> series(number, {0.0F, 0.0F, 0.0F});
        GraphPicture picture;
        const auto image = [&] {
          QImage painted((QSizeF(250, 50) * ratio).toSize(), QImage::Format_RGB32);
          painted.setDevicePixelRatio(ratio);
          painted.fill(Qt::white);
          const History history(series);
          QPainter painter(&painted);
          picture.layOut(scaled(kPanel, ratio), ratio, &history, number, 100.0F);
          paintGraph(painter, picture, graphColors(palette));
          return painted;
        };
        const QImage before = image();
        series[number / 2].back() = value;
        const QImage after = image();
        const QRect cell = picture.cells[number / 2];
        const QRect latest(cell.right() + 1 - picture.sampleWidth, cell.top(), picture.sampleWidth,
                           cell.height());
        QRect changed;
        for (int i = 0; i < before.width() * before.height(); ++i) {
          const QPoint at(i % before.width(), i / before.width());
          changed |= before.pixel(at) == after.pixel(at) ? QRect() : QRect(at, QSize(1, 1));
          EXPECT_TRUE(before.pixel(at) == qRgb(255, 255, 255) || picture.frame.contains(at));
        }
        EXPECT_EQ(changed.right(), latest.right());
        EXPECT_EQ(changed.width(), latest.width());
        EXPECT_TRUE(latest.contains(changed));
        const QColor top = after.pixelColor(changed.topRight());
        EXPECT_EQ(top.red() > 2 * top.blue(), value > 70.0F) << top.name().toStdString();
      }
    }
  }
}

}  // namespace vel::test
