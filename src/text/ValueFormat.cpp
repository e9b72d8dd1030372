#include "text/ValueFormat.h"

#include <cstdint>
#include <string_view>

#include "text/Localisation.h"

namespace vel {

std::string floatToPercentageString(float fraction, int decimals, const Locale& locale) {
  const float percent = fraction * 100.0F;
  return locale.number(percent, decimals) + "%";
}

std::string componentToTimeString(const CalendarDifference& duration, const Bundle& bundle) {
  std::string text;
  const auto append = [&](std::string_view key, std::int64_t value) {
    if (value != 0) {
      text += Locale::formatInteger(VELLoc(bundle, key), value);
    }
  };
  append(duration.month < 2 ? "%ld month" : "%ld months", duration.month);
  append(" %ldd", duration.day);
  append(" %ldh", duration.hour);
  append(" %ldm", duration.minute);
  return text.empty() ? "-" : text;
}

}  // namespace vel
