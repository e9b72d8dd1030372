// A drawing as a list of what is drawn.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/windowing/DrawingContext.h"

namespace vel {

class HeadlessDrawing : public DrawingContext {
 public:
  /// In their order, one line each: "save", "restore", "translate 0.5 4.5", "scale 2 2",
  /// "clip x y width height", "fill x y width height, radii x y, red green blue alpha" and
  /// "text x y width height, size 24, red green blue alpha, center: the text".
  [[nodiscard]] const std::vector<std::string>& operations() const { return operations_; }

  /// Of these the texts alone.
  [[nodiscard]] const std::vector<std::string>& texts() const { return texts_; }

  void saveState() override { operations_.emplace_back("save"); }
  void restoreState() override { operations_.emplace_back("restore"); }
  void translate(double x, double y) override;
  void scale(double x, double y) override;
  void clip(const Rect& rect) override;
  void fillRoundedRect(const Rect& rect, Size radii, const Color& color) override;
  /// Any text is one line, as wide as it may be and 1.25 times as high as the font is large.
  [[nodiscard]] Size sizeOfText(std::string_view text, Size maximum,
                                const TextAttributes& attributes) override;
  void drawText(std::string_view text, const Rect& rect, const TextAttributes& attributes) override;

 private:
  std::vector<std::string> operations_;
  std::vector<std::string> texts_;
};

}  // namespace vel
