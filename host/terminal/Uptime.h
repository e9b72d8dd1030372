// How long the machine has been up, in the words of the one who reads it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "platform/foundation/GregorianCalendar.h"

namespace vel {

/// As "1mo 3d 04:05", leading units of 0 left out; "-" when it is unknown or negative, as on a
/// machine whose clock has been set back to before its start. The formats hold a "%ld" each.
std::string uptimeText(const std::optional<CalendarDifference>& upTime,
                       std::string_view monthFormat, std::string_view dayFormat);

}  // namespace vel
