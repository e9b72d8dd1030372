#include "host/terminal/Item.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "platform/headless/HeadlessDrawing.h"
#include "platform/headless/HeadlessTree.h"
#include "platform/headless/HeadlessWidgets.h"

namespace vel {
namespace {

void append(std::string& text, std::string_view piece) {
  if (!text.empty() && !piece.empty()) {
    text += ' ';
  }
  text += piece;
}

/// The module paints a gauge at normal load in the menu bar's text colour, a grey, and a busy one
/// in red, which may be translucent.
bool isRed(const Color& color) {
  return color.red > 2.0 * std::max(color.green, color.blue);
}

Item::Gauge gaugeOf(const VELGaugeViewMultiple::Gauge& gauge) {
  // In this order what is no number counts as 0.
  return {std::min(std::max(0.0F, gauge.value / 100.0F), 1.0F), isRed(gauge.innerColor)};
}

void readPiece(Item& item, const View& view) {
  if (const auto* text = dynamic_cast<const VELMenuBarText*>(&view)) {
    append(item.text, text->stringValue());
  } else if (const auto* name = dynamic_cast<const HeadlessModuleNameStatusBarView*>(&view)) {
    append(item.name, name->threeLetterName());
  } else if (const auto* gauges = dynamic_cast<const VELGaugeViewMultiple*>(&view)) {
    std::transform(gauges->gauges().begin(), gauges->gauges().end(),
                   std::back_inserter(item.gauges), gaugeOf);
  } else if (const auto* plain = dynamic_cast<const HeadlessView<View>*>(&view)) {
    HeadlessDrawing drawing;
    plain->draw(drawing);
    for (const std::string& drawn : drawing.texts()) {
      append(item.badge, drawn);
    }
  }
}

/// From right to left, so that the leftmost is the first to be taken off the end.
void appendSubviews(std::vector<View*>& views, const View& view) {
  if (const auto* tree = dynamic_cast<const HeadlessTree*>(&view)) {
    const auto begin =
        views.insert(views.end(), tree->subviews().rbegin(), tree->subviews().rend());
    std::stable_sort(begin, views.end(), [](const View* one, const View* other) {
      return one->frame().origin.x > other->frame().origin.x;
    });
  }
}

}  // namespace

void Item::read(View* view) {
  name.clear();
  text.clear();
  gauges.clear();
  badge.clear();
  std::vector<View*> left(view == nullptr ? 0 : 1, view);
  while (!left.empty()) {
    const View& next = *left.back();
    left.pop_back();
    if (!next.isHidden()) {
      readPiece(*this, next);
      appendSubviews(left, next);
    }
  }
}

}  // namespace vel
