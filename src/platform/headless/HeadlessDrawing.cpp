#include "platform/headless/HeadlessDrawing.h"

#include <array>
#include <charconv>
#include <initializer_list>

namespace vel {
namespace {

constexpr double kLineHeight = 1.25;

/// As short as they are exact, with a blank before each.
std::string numbers(std::initializer_list<double> values) {
  std::string text;
  for (const double value : values) {
    std::array<char, 32> digits{};
    auto* const end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    text.append(1, ' ').append(digits.data(), end);
  }
  return text;
}

std::string numbers(const Rect& rect) {
  return numbers({rect.origin.x, rect.origin.y, rect.size.width, rect.size.height});
}

std::string numbers(const Color& color) {
  return numbers({color.red, color.green, color.blue, color.alpha});
}

}  // namespace

void HeadlessDrawing::translate(double x, double y) {
  operations_.push_back("translate" + numbers({x, y}));
}

void HeadlessDrawing::scale(double x, double y) {
  operations_.push_back("scale" + numbers({x, y}));
}

void HeadlessDrawing::clip(const Rect& rect) {
  operations_.push_back("clip" + numbers(rect));
}

void HeadlessDrawing::fillRoundedRect(const Rect& rect, Size radii, const Color& color) {
  operations_.push_back("fill" + numbers(rect) + ", radii" + numbers({radii.width, radii.height}) +
                        "," + numbers(color));
}

Size HeadlessDrawing::sizeOfText(std::string_view /*text*/, Size maximum,
                                 const TextAttributes& attributes) {
  return {maximum.width, attributes.fontSize * kLineHeight};
}

void HeadlessDrawing::drawText(std::string_view text, const Rect& rect,
                               const TextAttributes& attributes) {
  const bool isCentered = attributes.alignment == TextAlignment::center;
  texts_.emplace_back(text);
  operations_.push_back("text" + numbers(rect) + ", size" + numbers({attributes.fontSize}) + "," +
                        numbers(attributes.color) + (isCentered ? ", center: " : ", left: ") +
                        texts_.back());
}

}  // namespace vel
