// What a view draws with.
#pragma once

#include <cstdint>
#include <string_view>

#include "platform/windowing/Color.h"
#include "platform/windowing/Geometry.h"

namespace vel {

enum class TextAlignment : std::uint8_t { left, center };

/// A text in the system's font.
struct TextAttributes {
  double fontSize = 0.0;  ///< in points
  Color color;
  TextAlignment alignment = TextAlignment::left;
};

/// Unlike frames, what is drawn has its origin at the bottom left of the view and its y axis
/// upwards; a rectangle's origin is its lower left corner. Valid during one drawing.
class DrawingContext {
 public:
  DrawingContext() = default;
  virtual ~DrawingContext() = default;
  DrawingContext(const DrawingContext&) = delete;
  DrawingContext& operator=(const DrawingContext&) = delete;

  /// Transformation and clipping, which `restoreState` brings back. They nest.
  virtual void saveState() = 0;
  virtual void restoreState() = 0;

  /// Move and stretch the space in which everything after it is drawn.
  virtual void translate(double x, double y) = 0;
  virtual void scale(double x, double y) = 0;

  /// From now on nothing outside of the rectangle, and of earlier ones, is drawn.
  virtual void clip(const Rect& rect) = 0;

  /// `radii` of the corners: along x, along y.
  virtual void fillRoundedRect(const Rect& rect, Size radii, const Color& color) = 0;

  /// Of a text in UTF-8, laid out in lines no wider than `maximum`, but for longer words. The lines
  /// count whole, so that the height may be more than its.
  [[nodiscard]] virtual Size sizeOfText(std::string_view text, Size maximum,
                                        const TextAttributes& attributes) = 0;

  /// The text's first line begins at the top of the rectangle. What does not fit is drawn outside
  /// of it.
  virtual void drawText(std::string_view text, const Rect& rect,
                        const TextAttributes& attributes) = 0;
};

}  // namespace vel
