// What gauges look like, in pixels.
#include "host/desktop/kit/GaugePainter.h"

#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <limits>
#include <numeric>
#include <vector>

namespace vel::test {

using Gauges = std::vector<VELGaugeViewMultiple::Gauge>;

constexpr Color kBlack{0, 0, 0, 1};
constexpr Color kRed{1, 0, 0, 1};
constexpr Color kNothing{0, 0, 0, 0};
constexpr int kHeight = 16;

/// Calls `check` for each style at each scale.
template <typename Check>
void forEachLook(const std::vector<std::size_t>& numbers, Check check) {
  for (const int style : {1, 2, 3, 4}) {
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
      for (const std::size_t number : numbers) {
        SCOPED_TRACE(testing::Message()
                     << "style " << style << ", ratio " << ratio << ", " << number << " gauges");
        check(style, ratio, number);
      }
    }
  }
}

/// On white, as a widget in a window at that scale is painted.
struct Painted {
  Painted(int style, double ratio, const Gauges& gauges, const Color& outer) {
    // Odd, so that the gauges begin between two pixels at 1.25 and 1.5.
    const QRect place(QPoint(3, 3), QSize(gaugesWidth(style, gauges.size()), kHeight));
    image = QImage((QSizeF(place.right() + 4, place.bottom() + 4) * ratio).toSize(),
                   QImage::Format_RGB32);
    image.fill(Qt::white);
    image.setDevicePixelRatio(ratio);
    QPainter painter(&image);
    paintGauges(painter, place, style, gauges, outer);

    const QRectF pixels(QPointF(place.topLeft()) * ratio, QSizeF(place.size()) * ratio);
    for (int i = 0; i < image.width() * image.height(); ++i) {
      const QPoint at(i % image.width(), i / image.width());
      const QRgb pixel = image.pixel(at);
      black += (255 - qRed(pixel)) / 255.0;
      outside += pixel != qRgb(255, 255, 255) && !pixels.contains(QRectF(at, QSizeF(1, 1)));
      blurred += pixel != qRgb(255, 255, 255) && pixel != qRgb(0, 0, 0) && pixel != qRgb(255, 0, 0);
    }
  }

  QImage image;
  double black = 0;  ///< in pixels, as are
  int outside = 0;
  int blurred = 0;
};

TEST(GaugePainter, FillsInProportionToTheValue) {
  forEachLook({1, 4, 16, 64, 1000}, [](int style, double ratio, std::size_t number) {
    const auto amount = [&](float value) {
      return Painted(style, ratio, Gauges(number, {value, kBlack}), kNothing).black;
    };
    const double full = amount(100.0F);
    EXPECT_EQ(amount(0.0F), 0.0);
    EXPECT_NEAR(amount(50.0F) / full, 0.5, 0.11);
    EXPECT_LT(amount(20.0F), amount(50.0F));
    EXPECT_LT(amount(70.0F), full);
    EXPECT_EQ(amount(std::numeric_limits<float>::quiet_NaN()), 0.0);
    EXPECT_EQ(amount(-std::numeric_limits<float>::infinity()), 0.0);
    EXPECT_EQ(amount(250.0F), full);
  });
}

TEST(GaugePainter, IsSharpInItsPlaceAndInAStyleOfItsOwn) {
  forEachLook({1, 2, 8, 17, 64}, [](int style, double ratio, std::size_t number) {
    const Gauges gauges(number, {42.0F, kBlack});
    const Painted painted(style, ratio, gauges, kRed);
    EXPECT_EQ(painted.outside, 0);
    EXPECT_TRUE(style % 2 == 0 || painted.blurred == 0) << painted.blurred;
    for (const int other : {0, 1, 2, 3, 4, 5}) {
      EXPECT_EQ(painted.image == Painted(other, ratio, gauges, kRed).image,
                std::clamp(other, 1, 4) == style);
    }
  });
}

TEST(GaugePicture, EveryGaugeHasAReadableCellOfItsOwnUpTo64) {
  std::vector<std::size_t> numbers(201);
  std::iota(numbers.begin(), numbers.end(), 0);
  forEachLook(numbers, [](int style, double ratio, std::size_t number) {
    const int width = gaugesWidth(style, number);
    EXPECT_LE(width, 256);
    // As many pixels as are left when the place begins and ends within one.
    const QRect area(0, 0, int(width * ratio - 0.999), int(kHeight * ratio - 0.999));
    GaugePicture picture;
    picture.layOut(area, ratio, style, Gauges(number), kRed);
    ASSERT_EQ(picture.cells.size(), std::min<std::size_t>(number, 64));
    for (auto cell = picture.cells.begin(); cell != picture.cells.end(); ++cell) {
      EXPECT_TRUE(area.contains(cell->place));
      // The one point that is lost is a gap's, where there is one.
      EXPECT_GE(cell->place.width(), style % 2 == 1 ? 3 : 6);
      EXPECT_TRUE(std::none_of(picture.cells.begin(), cell, [&](const auto& other) {
        return other.place.intersects(cell->place);
      }));
    }
  });
}

TEST(GaugePicture, ASharedCellShowsItsHighestGauge) {
  Gauges gauges(1000, {10.0F, kBlack});
  gauges.back() = {90.0F, kRed};
  // A tray icon has far less room than the menu bar.
  for (const QRect area : {QRect(0, 0, 256, 16), QRect(0, 0, 22, 22), QRect(0, 0, 1, 1)}) {
    forEachLook({gauges.size()}, [&](int style, double ratio, std::size_t /*number*/) {
      GaugePicture picture;
      picture.layOut(area, ratio, style, gauges, kRed);
      for (const auto& cell : picture.cells) {
        EXPECT_TRUE(area.contains(cell.place));
        EXPECT_EQ(cell.color == kRed, &cell == &picture.cells.back());
      }
    });
  }
}

}  // namespace vel::test
