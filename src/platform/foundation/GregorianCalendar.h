// How far apart two moments are, in the units that people use.
#pragma once

#include <cstdint>

namespace vel {

/// A calendar difference in exactly these units: months grow without bound, seconds are dropped.
/// All four carry the same sign or are 0.
struct CalendarDifference {
  std::int64_t month = 0;
  std::int64_t day = 0;
  std::int64_t hour = 0;
  std::int64_t minute = 0;

  bool operator==(const CalendarDifference&) const = default;
};

class GregorianCalendar {
 public:
  /// The difference between two moments, each in seconds since 1970-01-01 00:00 UTC, in the
  /// system's time zone as it is at the call.
  ///
  /// As many whole months as fit, then as many whole days, both counted on the wall clock: a day
  /// over a daylight-saving change is one day, and a month from 31 January ends on the last of
  /// February. What remains is counted as elapsed time in hours and minutes. With `to` before
  /// `from` the units are counted backwards from `from` and are negative. Moments that the calendar
  /// cannot represent (not finite, or more than 28 000 years from 1970) give all 0.
  ///
  /// A count of units whose end the wall clock shows twice ends the first time; one whose end it
  /// skips ends later by what it skips. The moments count to the microsecond, which is what a
  /// double of this size holds.
  ///
  /// Allocates nothing itself, and asks the system for its zone once a call.
  [[nodiscard]] CalendarDifference difference(double from, double to) const;
};

}  // namespace vel
