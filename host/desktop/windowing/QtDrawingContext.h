// The module's drawing, by a painter of Qt's.
#pragma once

#include <QFont>
#include <QPainter>
#include <QWidget>
#include <optional>

#include "platform/windowing/DrawingContext.h"

namespace vel {

/// Draws on a widget while that is being painted. The font is the widget's, in whole pixels.
class QtDrawingContext : public DrawingContext {
 public:
  /// `widget` outlives the context.
  explicit QtDrawingContext(QWidget& widget) : widget_(widget) {}

  void saveState() override { painter().save(); }
  void restoreState() override { painter().restore(); }
  void translate(double x, double y) override { painter().translate(x, y); }
  void scale(double x, double y) override { painter().scale(x, y); }
  void clip(const Rect& rect) override;
  void fillRoundedRect(const Rect& rect, Size radii, const Color& color) override;
  [[nodiscard]] Size sizeOfText(std::string_view text, Size maximum,
                                const TextAttributes& attributes) override;
  void drawText(std::string_view text, const Rect& rect, const TextAttributes& attributes) override;

 private:
  QPainter& painter();
  /// From the present space to the widget's. Text is laid out in the size in which it is seen:
  /// a font that the painter scales is not hinted for its pixels.
  [[nodiscard]] double textScale();
  /// In points of the widget's.
  [[nodiscard]] QFont fontOf(double size) const;

  QWidget& widget_;
  std::optional<QPainter> painter_;  ///< from the first use on: most views draw nothing
};

}  // namespace vel
