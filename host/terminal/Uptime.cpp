#include "host/terminal/Uptime.h"

#include <cstdint>

#include "platform/foundation/Locale.h"

namespace vel {
namespace {

std::string twoDigits(std::int64_t value) {
  return (value < 10 ? "0" : "") + std::to_string(value);
}

}  // namespace

std::string uptimeText(const std::optional<CalendarDifference>& upTime,
                       std::string_view monthFormat, std::string_view dayFormat) {
  if (!upTime || upTime->month < 0 || upTime->day < 0 || upTime->hour < 0 || upTime->minute < 0) {
    return "-";
  }
  std::string text;
  if (upTime->month > 0) {
    text += Locale::formatInteger(monthFormat, upTime->month) + " ";
  }
  if (upTime->month > 0 || upTime->day > 0) {
    text += Locale::formatInteger(dayFormat, upTime->day) + " ";
  }
  return text + twoDigits(upTime->hour) + ":" + twoDigits(upTime->minute);
}

}  // namespace vel
