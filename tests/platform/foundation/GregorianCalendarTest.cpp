// Differences over month ends and over the jumps of real zones.
#include "platform/foundation/GregorianCalendar.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <ctime>
#include <tuple>
#include <vector>

namespace vel::test {

/// Of "2026-03-29T03:00+02:00".
static double momentOf(const char* text) {
  std::tm wall{};
  EXPECT_NE(strptime(text, "%FT%R%z", &wall), nullptr);
  const auto offset = wall.tm_gmtoff;
  return static_cast<double>(timegm(&wall) - offset);
}

TEST(GregorianCalendar, Differences) {
  const std::vector<std::tuple<const char*, const char*, const char*, CalendarDifference>> cases = {
      {"UTC", "2026-05-02T12:03Z", "2026-05-01T10:00Z", {0, -1, -2, -3}},
      // Month ends, each counted from the start itself, and 400 days.
      {"UTC", "2026-01-31T12:00Z", "2026-02-28T11:59Z", {0, 27, 23, 59}},
      {"UTC", "2026-03-31T12:00Z", "2026-02-27T11:00Z", {-1, -1, -1, 0}},
      {"UTC", "2026-01-01T00:00Z", "2027-02-05T01:02Z", {13, 4, 1, 2}},
      // The clock goes forward: a short day, and a wall time that does not exist.
      {"Europe/Berlin", "2026-03-28T02:30+01:00", "2026-03-29T03:30+02:00", {0, 1, 0, 0}},
      // The clock goes back: a long day, and wall times that stand for two moments.
      {"Europe/Berlin", "2026-10-24T02:30+02:00", "2026-10-25T02:30+01:00", {0, 1, 1, 0}},
      {"Europe/Berlin", "2026-10-25T02:30+01:00", "2026-10-25T02:40+01:00", {0, 0, 0, 10}},
      // Back over midnight: the day is full while the wall clock shows the evening before again.
      {"America/St_Johns", "2006-10-28T00:00-02:30", "2006-10-28T23:30-03:30", {0, 1, 0, 30}},
      // Samoa had no 30 December 2011.
      {"Pacific/Apia", "2011-12-29T12:00-10:00", "2011-12-31T11:59+14:00", {0, 0, 23, 59}},
  };
  const GregorianCalendar calendar;
  for (const auto& [zone, from, to, expected] : cases) {
    setenv("TZ", zone, 1);
    EXPECT_EQ(calendar.difference(momentOf(from), momentOf(to)), expected) << to;
  }
  unsetenv("TZ");
}

TEST(GregorianCalendar, DropsSecondsAndTakesAnyNumber) {
  const GregorianCalendar calendar;
  EXPECT_EQ(calendar.difference(0.25, 3600), (CalendarDifference{0, 0, 0, 59}));
  // In doubles these two are less than 60 s apart.
  EXPECT_EQ(calendar.difference(1073741794.1, 1073741854.1), (CalendarDifference{0, 0, 0, 1}));
  for (const double odd : {std::nan(""), 1e300, -1e12}) {
    EXPECT_EQ(calendar.difference(odd, 0), CalendarDifference());
    EXPECT_EQ(calendar.difference(0, odd), CalendarDifference());
  }
}

}  // namespace vel::test
