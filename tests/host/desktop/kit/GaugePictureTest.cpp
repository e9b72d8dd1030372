// Where gauges stand, in pixels.
#include "host/desktop/kit/GaugePicture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

namespace vel::test {

using Gauges = std::vector<VELGaugeViewMultiple::Gauge>;

constexpr Color kBlack{0, 0, 0, 1};
constexpr Color kRed{1, 0, 0, 1};
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
