#include "platform/headless/HeadlessWidgets.h"

#include <algorithm>

namespace vel {

int HeadlessColor::refreshes(const View& view) const {
  const auto entry = refreshes_.find(&view);
  return entry == refreshes_.end() ? 0 : entry->second;
}

void HeadlessGaugeViewMultiple::setGaugeWidth(double width) {
  gaugeWidth_ = width;
  fit();
}

double widthInFixedFont(std::string_view text) {
  constexpr double kWidthOfCharacter = 7.0;
  const auto startsCharacter = [](char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U;
  };
  return kWidthOfCharacter *
         static_cast<double>(std::count_if(text.begin(), text.end(), startsCharacter));
}

}  // namespace vel
