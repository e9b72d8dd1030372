// The badge as Qt draws it, in pixels.
#include "host/desktop/windowing/QtDrawingContext.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QWidget>
#include <array>
#include <cmath>
#include <cstdint>
#include <functional>

#include "host/desktop/windowing/QtView.h"
#include "views/menubar/VELMenuBarGFXGPU.h"

namespace vel::test {
namespace {

constexpr QSize kSize(12, 18);
constexpr QRect kBox(1, 1, 10, 12);

struct Look {
  int scale;
  QRgb window;
  Color label;
};

constexpr QRgb kLightWindow = qRgb(244, 245, 246);
constexpr QRgb kDarkWindow = qRgb(40, 42, 46);
constexpr Color kDark{0.1, 0.1, 0.1};
constexpr Color kLight{0.9, 0.9, 0.9};
constexpr std::array kLooks{Look{1, kLightWindow, kDark}, Look{1, kDarkWindow, kLight},
                            Look{2, kLightWindow, kDark}, Look{2, kDarkWindow, kLight}};

QImage paintedBadge(const Look& look, std::int64_t gputype) {
  QWidget widget;
  widget.resize(kSize);
  QtView<View> view(widget);
  VELMenuBarGFXGPU badge(view);
  badge.setGputype(gputype);
  badge.setInnerColor(look.label);
  badge.outerColor().set(look.label.withAlpha(0.3));
  QImage image(kSize * look.scale, QImage::Format_RGB32);
  image.fill(look.window);
  image.setDevicePixelRatio(look.scale);
  widget.render(&image, {}, {}, {});
  image.setDevicePixelRatio(1.0);
  return image;
}

/// Around all pixels that are so.
QRect extentOf(const QImage& image, const std::function<bool(QRgb)>& isPart) {
  QRect extent;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (isPart(image.pixel(x, y))) {
        extent |= QRect(x, y, 1, 1);
      }
    }
  }
  return extent;
}

/// Nearer to the letter's colour than to the box's.
std::function<bool(QRgb)> isLetterOn(QRgb box, const Color& label) {
  const int middle = (qGreen(box) + int(label.green * 255.0)) / 2;
  return [=](QRgb pixel) { return (qGreen(pixel) > middle) == (label.green > 0.5); };
}

TEST(QtDrawingContext, DrawsABoxInItsPlaceAndALetterInTheBox) {
  for (const Look& look : kLooks) {
    const QRect place(kBox.topLeft() * look.scale, kBox.size() * look.scale);
    for (const std::int64_t type : {0, 1}) {
      SCOPED_TRACE(testing::Message() << "scale " << look.scale << ", label " << look.label.green
                                      << ", type " << type);
      const QImage image = paintedBadge(look, type);
      EXPECT_EQ(extentOf(image, [&](QRgb pixel) { return pixel != look.window; }), place);
      const QRgb box = image.pixel(place.left(), place.center().y());
      for (const QPoint corner :
           {place.topLeft(), place.topRight(), place.bottomLeft(), place.bottomRight()}) {
        EXPECT_NE(image.pixel(corner), box);
      }
      EXPECT_EQ(image.pixel(place.left() + 2 * look.scale, place.top()), box);

      const QRect letter = extentOf(image, isLetterOn(box, look.label));
      EXPECT_GE(letter.height(), 8 * look.scale);
      const QPointF offset = QRectF(letter).center() - QRectF(place).center();
      EXPECT_LE(std::abs(offset.x()), look.scale);
      EXPECT_LE(std::abs(offset.y()), look.scale);
      // The rows of a "d" are its stem, at the right, before they are its bowl; the dot of an "i"
      // is the first part of it.
      const QRect top(letter.topLeft(), QSize(letter.width(), 2 * look.scale));
      const QRect first = extentOf(image.copy(top), isLetterOn(box, look.label));
      if (type == 1) {
        EXPECT_GE(letter.width(), 5 * look.scale);
        EXPECT_GE(first.left(), letter.width() / 2);
        EXPECT_EQ(first.right(), letter.width() - 1);
      } else {
        EXPECT_LE(letter.width(), 2 * look.scale);
        EXPECT_LT(first.height(), top.height());
      }
    }
  }
}

}  // namespace
}  // namespace vel::test
