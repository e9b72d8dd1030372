// The environment's locale, with locales that the test compiles for itself, and numbers.
#include "platform/foundation/Locale.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <tuple>
#include <utility>

#include "support/TemporaryDirectory.h"

/// glibc never frees the list of directories that newlocale makes of LOCPATH.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name that LeakSanitizer looks for.
extern "C" const char* __lsan_default_suppressions() {
  return "leak:argz_add_sep";
}

namespace vel::test {

TEST(Locale, OfTheEnvironment) {
  const TemporaryDirectory directory;
  setenv("LOCPATH", directory.path.c_str(), 1);
  ASSERT_EQ(std::system("cd $LOCPATH && localedef -i de_DE -f UTF-8 ./de_DE.UTF-8 && "
                        "localedef -i ps_AF -f UTF-8 ./ps_AF.UTF-8"),
            0);
  using Environment = std::vector<std::pair<const char*, const char*>>;
  const char* const german = "de_DE.UTF-8";
  const std::vector<std::string> de = {"de_DE", "de"};
  const char* const odd = ":pt_BR.UTF-8:pt_PT@euro:../x:e\xC3\xA9:a b:_DE:.UTF-8:zh-Hans:";
  // An environment, its separator and its languages.
  const std::vector<std::tuple<Environment, const char*, std::vector<std::string>>> cases = {
      {Environment{}, ".", {}},
      {{{"LANG", german}, {"LC_ALL", ""}, {"LANGUAGE", ""}}, ",", de},
      {{{"LANG", "ps_AF.UTF-8"}, {"LC_NUMERIC", ""}}, "\u066B", {"ps_AF", "ps"}},
      {{{"LANG", german}, {"LC_MESSAGES", "POSIX"}, {"LANGUAGE", "fr"}}, ",", {}},
      {{{"LANG", "xx_XX.UTF-8"}, {"LANGUAGE", "de"}}, ".", {}},  // The machine does not have it.
      {{{"LANG", german}, {"LANGUAGE", odd}}, ",", {"pt_BR", "pt", "pt_PT", "zh-Hans"}},
  };
  for (const auto& [environment, separator, languages] : cases) {
    SCOPED_TRACE(testing::PrintToString(environment));
    for (const char* name : {"LANG", "LANGUAGE", "LC_ALL", "LC_NUMERIC", "LC_MESSAGES"}) {
      unsetenv(name);
    }
    for (const auto& [name, value] : environment) {
      setenv(name, value, 1);
    }
    const Locale locale = Locale::current();
    EXPECT_EQ(locale.decimalSeparator(), separator);
    EXPECT_EQ(locale.languages(), languages);
  }
}

TEST(Locale, WritesNumbers) {
  const Locale locale("\u066B");
  EXPECT_EQ(locale.number(1234.125, 2), "1234\u066B12");
  EXPECT_EQ(locale.number(3.7, -4), "4");
  EXPECT_EQ(locale.number(-std::nan(""), 1), "nan");
  EXPECT_EQ(locale.number(-1.7e308, 1000).size(), 1U + 309U + 2U + 100U);
  // Formats have one integer and nothing else.
  EXPECT_EQ(Locale::formatInteger("%%ld %ld%% %ld", INT64_MIN), "%ld -9223372036854775808% %ld");
  EXPECT_EQ(Locale::formatInteger("%s %n %d %5ld %l %", 7), "%s %n %d %5ld %l %");
}

}  // namespace vel::test
