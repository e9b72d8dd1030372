// The texts that the views make of readings.
#pragma once

#include <string>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/GregorianCalendar.h"
#include "platform/foundation/Locale.h"

namespace vel {

/// A load fraction as a percentage, such as "12,3%": `decimals` is 0 in the menu bar and 1 in the
/// panels. The product with 100 is formed in single precision; nothing is clamped.
std::string floatToPercentageString(float fraction, int decimals, const Locale& locale);

/// A duration such as "2 months 10d 23h 59m". A unit that is 0 is left out, "-" when all are; every
/// part but the months begins with a blank, also at the front. The parts' wording comes from the
/// bundle's "Localizable" table under the keys
/// "%ld month" (below 2), "%ld months", " %ldd", " %ldh" and " %ldm".
std::string componentToTimeString(const CalendarDifference& duration, const Bundle& bundle);

}  // namespace vel
