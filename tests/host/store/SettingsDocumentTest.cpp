// What a settings file says, and that a change leaves the rest of it alone.
#include "host/store/SettingsDocument.h"

#include <gtest/gtest.h>

namespace vel::test {
namespace {

using std::string_literals::operator""s;

TEST(SettingsDocument, changesOneValueAndNothingElse) {
  const struct {
    std::string before;
    std::string after;  ///< x = 5 in section a
  } cases[] = {
      {"", "[a]\nx = 5\n"},
      {"# mine\n", "# mine\n\n[a]\nx = 5\n"},
      {"[b]\r\nx = 1\r\n \r\n", "[b]\r\nx = 1\r\n \r\n[a]\r\nx = 5\r\n"},
      {"[b]\r\nx = 1", "[b]\r\nx = 1\r\n\r\n[a]\r\nx = 5"},
      {"[a]", "[a]\nx = 5"},
      {"[a]\n[b]\ny = 1\n", "[a]\nx = 5\n[b]\ny = 1\n"},
      {"[a]\ny = 1\n\n# of b\n[b]\n", "[a]\ny = 1\nx = 5\n\n# of b\n[b]\n"},
      {"[a]\nx=1", "[a]\nx=5"},
      {"[a]\r\n\tx\t=\t1\t\r\n; end", "[a]\r\n\tx\t=\t5\t\r\n; end"},
      {"[a]\nx =\nX = 1\n", "[a]\nx =5\nX = 1\n"},
      {"[a]\nx = 1 # = one\n\n\n#x = 2\n;x = 3\n", "[a]\nx = 5\n\n\n#x = 2\n;x = 3\n"},
      {"[a]\nx = 1\nx = 2\n[A]\nx = 3\n", "[a]\nx = 1\nx = 5\n[A]\nx = 3\n"},
      {"[ a ]\nx = 1\n[b]\nx = 2\n[a]\ny = 3\n", "[ a ]\nx = 5\n[b]\nx = 2\n[a]\ny = 3\n"},
      {"[a]\n[b]\n[a]\ny = 3\n[c]\n", "[a]\n[b]\n[a]\ny = 3\nx = 5\n[c]\n"},
      {"\xEF\xBB\xBF[a]\nx = 1\n\xFF = \xFE\n", "\xEF\xBB\xBF[a]\nx = 5\n\xFF = \xFE\n"},
      {"x = 1\n[a]b]\nx = 2\n", "x = 1\n[a]b]\nx = 2\n\n[a]\nx = 5\n"},
  };
  for (const auto& [before, after] : cases) {
    SCOPED_TRACE(before);
    SettingsDocument document(before);
    EXPECT_EQ(document.text(), before);
    document.set("a", "x", 5);
    EXPECT_EQ(document.text(), after);
  }
}

TEST(SettingsDocument, namesTheLineOfAFault) {
  const struct {
    std::string text;
    std::size_t line;
  } cases[] = {
      {"word", 1},          {"[a]\n[b\n", 2},     {"[a]\r\n\r\n= 1", 3},
      {"[a] # comment", 1}, {"[a]\nx\0 = 1"s, 2}, {"#\0"s, 1},
  };
  for (const auto& [text, line] : cases) {
    SCOPED_TRACE(text);
    try {
      const SettingsDocument document(text);
      ADD_FAILURE() << "accepted";
    } catch (const SettingsFault& fault) {
      EXPECT_EQ(fault.line, line);
    }
  }
}

}  // namespace
}  // namespace vel::test
