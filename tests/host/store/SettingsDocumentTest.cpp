// What a settings file says, and that a change leaves the rest of it alone.
#include "host/store/SettingsDocument.h"

#include <gtest/gtest.h>

#include <utility>

namespace vel::test {
TEST(SettingsDocument, changesOneValueAndNothingElse) {
  // Before and after x = 5 in section a.
  const std::pair<std::string, std::string> cases[] = {
      {"", "[a]\nx = 5\n"},
      {"[b]\r\nx = 1\r\n \r\n", "[b]\r\nx = 1\r\n \r\n[a]\r\nx = 5\r\n"},
      {"x = 1\n[a]b]\nx = 2", "x = 1\n[a]b]\nx = 2\n\n[a]\nx = 5"},
      {"[a]\ny = 1\n\n# of b\n[b]\n", "[a]\ny = 1\nx = 5\n\n# of b\n[b]\n"},
      {"\xEF\xBB\xBF[ a ]\r\n\tx\t=\t1 # = 2\t\r\n;x = 3\n\xFF = \xFE",
       "\xEF\xBB\xBF[ a ]\r\n\tx\t=\t5\t\r\n;x = 3\n\xFF = \xFE"},
      {"[a]\nx =\nX = 1\n\n\n#x = 2\n", "[a]\nx =5\nX = 1\n\n\n#x = 2\n"},
      {"[a]\nx = 1\nx = 2\n[A]\nx = 3\n[a]\ny=4", "[a]\nx = 1\nx = 5\n[A]\nx = 3\n[a]\ny=4"},
      {"[a]\n[b]\n[a]\ny = 3\n[c]\n", "[a]\n[b]\n[a]\ny = 3\nx = 5\n[c]\n"},
  };
  for (const auto& [before, after] : cases) {
    SCOPED_TRACE(before);
    SettingsDocument document(before);
    document.set("a", "x", 5);
    EXPECT_EQ(document.text(), after);
  }
}

}  // namespace vel::test
