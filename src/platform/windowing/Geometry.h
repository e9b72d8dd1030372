// Places and sizes in points: device-independent pixels, the origin at the top left.
#pragma once

namespace vel {

struct Point {
  double x = 0.0;
  double y = 0.0;
  bool operator==(const Point&) const = default;
};

struct Size {
  double width = 0.0;
  double height = 0.0;
  bool operator==(const Size&) const = default;
};

struct Rect {
  Point origin;  ///< in the view above
  Size size;
  bool operator==(const Rect&) const = default;
};

}  // namespace vel
