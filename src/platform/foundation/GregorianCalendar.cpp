// Calendar arithmetic on the wall clock of the system's zone.
#include "platform/foundation/GregorianCalendar.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>

namespace vel {
namespace {

using std::chrono::days;
using std::chrono::hours;
using std::chrono::microseconds;
using std::chrono::minutes;
using std::chrono::months;
using std::chrono::seconds;

using Moment = std::chrono::sys_time<microseconds>;
using WallTime = std::chrono::local_time<microseconds>;

/// In seconds from 1970; leaves room before the last year of std::chrono, 32767.
constexpr double kFarthest = 28'000 * 365.2425 * 86'400;

/// No zone's wall clock is further from UTC.
constexpr hours kBeyondAnyOffset{25};

bool isRepresentable(double time) {
  return std::isfinite(time) && std::abs(time) <= kFarthest;
}

Moment momentOf(double time) {
  return Moment{microseconds{std::llround(time * 1e6)}};
}

/// What the wall clock is ahead of UTC.
seconds offsetAt(Moment moment) {
  const std::time_t time = std::chrono::floor<seconds>(moment).time_since_epoch().count();
  std::tm wall{};
  localtime_r(&time, &wall);
  return seconds{wall.tm_gmtoff};
}

WallTime wallTimeAt(Moment moment) {
  return WallTime{(moment + offsetAt(moment)).time_since_epoch()};
}

Moment momentAt(WallTime wall) {
  const Moment asIfUTC{wall.time_since_epoch()};
  const seconds before = offsetAt(asIfUTC - kBeyondAnyOffset);
  const seconds after = offsetAt(asIfUTC + kBeyondAnyOffset);
  const Moment first = asIfUTC - before;
  if (before == after || offsetAt(first) == before) {
    return first;
  }
  const Moment second = asIfUTC - after;
  // With neither, the clock was put forward over `wall`: `first` is later by what it skipped.
  return offsetAt(second) == after ? second : first;
}

/// Moments a number of units away from a start, each computed from the start itself.
class Reckoning {
 public:
  explicit Reckoning(Moment start) : Reckoning(start, wallTimeAt(start)) {}

  [[nodiscard]] std::chrono::year_month_day date() const { return date_; }

  [[nodiscard]] std::chrono::local_days dateAfter(months count) const {
    const auto month = date_.year() / date_.month() + count;
    return std::chrono::local_days{month /
                                   std::min(date_.day(), (month / std::chrono::last).day())};
  }

  [[nodiscard]] Moment after(months monthCount, days dayCount) const {
    if (monthCount == months{0} && dayCount == days{0}) {
      return start_;  // The wall time alone might also stand for another moment.
    }
    return momentAt(dateAfter(monthCount) + dayCount + timeOfDay_);
  }

 private:
  Reckoning(Moment start, WallTime wall)
      : start_(start),
        date_(std::chrono::floor<days>(wall)),
        timeOfDay_(wall - std::chrono::floor<days>(wall)) {}

  Moment start_;
  std::chrono::year_month_day date_;
  microseconds timeOfDay_;
};

/// The span between two moments. Units run in its direction: counts are negative if it
/// runs backwards.
class Span {
 public:
  Span(Moment start, Moment end) : start_(start), end_(end), direction_(start < end ? 1 : -1) {}

  /// The largest count for which `at(count)` lies on the span. `estimate` is short of it by at most
  /// one.
  template <typename Unit, typename At>
  [[nodiscard]] Unit most(Unit estimate, At at) const {
    const Unit step{direction_};
    Unit count = estimate + step;
    while (count * direction_ > Unit{0} && !contains(at(count))) {
      count -= step;
    }
    return count * direction_ > Unit{0} ? count : Unit{0};
  }

 private:
  /// Without the start: a day that the zone leaves out takes no time and is not one.
  [[nodiscard]] bool contains(Moment moment) const {
    return direction_ > 0 ? start_ < moment && moment <= end_ : end_ <= moment && moment < start_;
  }

  Moment start_;
  Moment end_;
  int direction_;
};

}  // namespace

CalendarDifference GregorianCalendar::difference(double from, double to) const {
  if (!isRepresentable(from) || !isRepresentable(to)) {
    return {};
  }
  tzset();  // localtime_r alone need not notice that the zone has changed.
  const Moment start = momentOf(from);
  const Moment end = momentOf(to);
  const Reckoning reckoning(start);
  const auto endDay = std::chrono::floor<days>(wallTimeAt(end));
  const std::chrono::year_month_day endDate{endDay};
  const Span span(start, end);

  const months month = span.most(
      endDate.year() / endDate.month() - reckoning.date().year() / reckoning.date().month(),
      [&](months count) { return reckoning.after(count, days{0}); });
  const days day = span.most(endDay - reckoning.dateAfter(month),
                             [&](days count) { return reckoning.after(month, count); });
  const microseconds rest = end - reckoning.after(month, day);
  const auto hour = std::chrono::duration_cast<hours>(rest);
  const auto minute = std::chrono::duration_cast<minutes>(rest - hour);
  return {month.count(), day.count(), hour.count(), minute.count()};
}

}  // namespace vel
