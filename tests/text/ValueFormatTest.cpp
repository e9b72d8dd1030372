// Percentages and durations as the views print them.
#include "text/ValueFormat.h"

#include <gtest/gtest.h>

#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

TEST(ValueFormat, Percentages) {
  struct Case {
    float fraction;
    const char* menuBar;
    const char* panel;
  };
  const Case cases[] = {
      {0.0F, "0%", "0.0%"},     {0.996F, "100%", "99.6%"}, {0.125F, "12%", "12.5%"},
      {1.2F, "120%", "120.0%"}, {-0.05F, "-5%", "-5.0%"},  {0.375F, "38%", "37.5%"},
      {1.0F, "100%", "100.0%"}, {0.0025F, "0%", "0.2%"},   {0.0075F, "1%", "0.8%"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(floatToPercentageString(c.fraction, 0, Locale()), c.menuBar);
    EXPECT_EQ(floatToPercentageString(c.fraction, 1, Locale()), c.panel);
  }
  EXPECT_EQ(floatToPercentageString(0.123F, 1, Locale(",")), "12,3%");
}

TEST(ValueFormat, Durations) {
  struct Case {
    CalendarDifference duration;
    const char* text;
    const char* german;
  };
  const Case cases[] = {
      {{0, 0, 0, 0}, "-", "-"},
      {{0, 0, 0, 7}, " 7m", " 7min"},
      {{0, 3, 4, 5}, " 3d 4h 5m", " 3T 4h 5min"},
      {{0, 0, 5, 0}, " 5h", " 5h"},
      {{1, 0, 0, 0}, "1 month", "1 Monat"},
      {{1, 2, 0, 9}, "1 month 2d 9m", "1 Monat 2T 9min"},
      {{2, 10, 23, 59}, "2 months 10d 23h 59m", "2 Monate 10T 23h 59min"},
      {{-1, 0, 0, -2}, "-1 month -2m", "-1 Monat -2min"},
  };
  const Bundle untranslated = moduleBundle();
  const Bundle english = moduleBundle({"en"});
  const Bundle german = moduleBundle({"de_AT", "de"});
  for (const auto& c : cases) {
    EXPECT_EQ(componentToTimeString(c.duration, untranslated), c.text);
    EXPECT_EQ(componentToTimeString(c.duration, english), c.text);
    EXPECT_EQ(componentToTimeString(c.duration, german), c.german);
  }
}

}  // namespace
}  // namespace vel::test
