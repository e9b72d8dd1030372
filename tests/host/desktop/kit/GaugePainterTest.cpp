// What gauges look like, in pixels.
#include "host/desktop/kit/GaugePainter.h"

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <limits>
#include <string>

namespace vel::test {

using Gauges = std::vector<VELGaugeViewMultiple::Gauge>;

constexpr double kRatios[] = {1.0, 1.25, 1.5, 2.0};
constexpr Color kBlack{0, 0, 0, 1};
constexpr Color kRed{1, 0, 0, 1};
constexpr Color kNothing{0, 0, 0, 0};
constexpr int kHeight = 16;
// Odd, so that the gauges begin between two pixels at 1.25 and 1.5.
constexpr QPoint kPlace(3, 3);

QRect placeOf(int style, std::size_t number) {
  return {kPlace, QSize(gaugesWidth(style, number), kHeight)};
}

/// On white, as a widget in a window at that scale is painted.
QImage painted(int style, const Gauges& gauges, double ratio, const Color& outer) {
  const QRect place = placeOf(style, gauges.size());
  QImage image((QSizeF(place.right() + 4, place.bottom() + 4) * ratio).toSize(),
               QImage::Format_RGB32);
  image.fill(Qt::white);
  image.setDevicePixelRatio(ratio);
  QPainter painter(&image);
  paintGauges(painter, place, style, gauges, outer);
  return image;
}

template <typename Count>
double sum(const QImage& image, Count count) {
  double total = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      total += count(image.pixel(x, y), QPoint(x, y));
    }
  }
  return total;
}

double blackness(const QImage& image) {
  return sum(image, [](QRgb pixel, QPoint) { return (255 - qRed(pixel)) / 255.0; });
}

TEST(GaugePainter, FillsInProportionToTheValue) {
  for (const int style : {1, 2, 3, 4}) {
    for (const double ratio : kRatios) {
      for (const std::size_t number : {1U, 4U, 16U, 64U, 1000U}) {
        SCOPED_TRACE(testing::Message()
                     << "style " << style << ", ratio " << ratio << ", " << number << " gauges");
        const auto amount = [&](float value) {
          return blackness(painted(style, Gauges(number, {value, kBlack}), ratio, kNothing));
        };
        const double full = amount(100.0F);
        EXPECT_EQ(amount(0.0F), 0.0);
        EXPECT_NEAR(amount(50.0F) / full, 0.5, 0.11);
        EXPECT_LT(amount(20.0F), amount(50.0F));
        EXPECT_LT(amount(70.0F), full);
        EXPECT_EQ(amount(std::numeric_limits<float>::quiet_NaN()), 0.0);
        EXPECT_EQ(amount(-std::numeric_limits<float>::infinity()), 0.0);
        EXPECT_EQ(amount(250.0F), full);
      }
    }
  }
}

TEST(GaugePainter, StaysInItsPlaceAndIsSharp) {
  for (const int style : {1, 2, 3, 4}) {
    for (const double ratio : kRatios) {
      for (const std::size_t number : {1U, 2U, 8U, 17U, 64U}) {
        SCOPED_TRACE(testing::Message()
                     << "style " << style << ", ratio " << ratio << ", " << number << " gauges");
        const QImage image = painted(style, Gauges(number, {42.0F, kBlack}), ratio, kRed);
        const QRect place = placeOf(style, number);
        const QRectF pixels(QPointF(place.topLeft()) * ratio, QSizeF(place.size()) * ratio);
        EXPECT_EQ(sum(image,
                      [&](QRgb pixel, QPoint at) {
                        return pixel != qRgb(255, 255, 255) &&
                               !pixels.contains(QRectF(at, QSizeF(1, 1)));
                      }),
                  0);
        if (style % 2 == 1) {
          EXPECT_EQ(sum(image,
                        [](QRgb pixel, QPoint) {
                          return pixel != qRgb(255, 255, 255) && pixel != qRgb(0, 0, 0) &&
                                 pixel != qRgb(255, 0, 0);
                        }),
                    0);
        }
      }
    }
  }
}

TEST(GaugePainter, StylesDiffer) {
  for (const double ratio : kRatios) {
    for (const std::size_t number : {1U, 64U}) {
      SCOPED_TRACE(testing::Message() << "ratio " << ratio << ", " << number << " gauges");
      std::vector<QImage> images;
      for (const int style : {1, 2, 3, 4}) {
        images.push_back(painted(style, Gauges(number, {50.0F, kBlack}), ratio, kRed));
        EXPECT_EQ(std::count(images.begin(), images.end(), images.back()), 1) << style;
      }
      EXPECT_EQ(painted(0, Gauges(number, {50.0F, kBlack}), ratio, kRed), images.front());
      EXPECT_EQ(painted(9, Gauges(number, {50.0F, kBlack}), ratio, kRed), images.back());
    }
  }
}

TEST(GaugePicture, EveryGaugeHasAReadableCellOfItsOwnUpTo64) {
  GaugePicture picture;
  for (const int style : {1, 2, 3, 4}) {
    for (const double ratio : kRatios) {
      for (std::size_t number = 0; number <= 200; ++number) {
        SCOPED_TRACE(testing::Message()
                     << "style " << style << ", ratio " << ratio << ", " << number << " gauges");
        const int width = gaugesWidth(style, number);
        EXPECT_LE(width, 256);
        // As many pixels as are left when the place begins and ends within one.
        const QRect area(0, 0, int(width * ratio - 0.999), int(kHeight * ratio - 0.999));
        picture.layOut(area, ratio, style, Gauges(number), kRed);
        ASSERT_EQ(picture.cells.size(), std::min<std::size_t>(number, 64));
        for (std::size_t i = 0; i < picture.cells.size(); ++i) {
          const QRect& cell = picture.cells[i].place;
          EXPECT_TRUE(area.contains(cell));
          // The one point that is lost is a gap's, where there is one.
          EXPECT_GE(cell.width(), style % 2 == 1 ? 3 : 6);
          for (std::size_t j = 0; j < i; ++j) {
            EXPECT_FALSE(cell.intersects(picture.cells[j].place));
          }
        }
      }
    }
  }
}

TEST(GaugePicture, ASharedCellShowsItsHighestGauge) {
  GaugePicture picture;
  Gauges gauges(1000, {10.0F, kBlack});
  gauges.back() = {90.0F, kRed};
  for (const int style : {1, 2, 3, 4}) {
    SCOPED_TRACE(style);
    // A tray icon has far less room than the menu bar.
    for (const QRect area : {QRect(0, 0, 256, 16), QRect(0, 0, 22, 22), QRect(0, 0, 1, 1)}) {
      picture.layOut(area, 1.0, style, gauges, kRed);
      for (const auto& cell : picture.cells) {
        EXPECT_TRUE(area.contains(cell.place));
        EXPECT_EQ(cell.color == kRed, &cell == &picture.cells.back());
      }
    }
  }
}

}  // namespace vel::test
