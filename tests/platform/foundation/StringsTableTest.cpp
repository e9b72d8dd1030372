// Every encoding, every rule of the grammar, and the ways to break them.
#include "platform/foundation/StringsTable.h"

#include <gtest/gtest.h>

#include <vector>

namespace vel::test {

using Entries = decltype(StringsTable::entries);

static std::string utf16(std::u16string_view text, bool bigEndian = true) {
  std::string bytes;
  for (const char16_t unit : text) {
    for (const unsigned shift : {8U, 0U}) {
      bytes += static_cast<char>(unit >> (bigEndian ? shift : 8 - shift));
    }
  }
  return bytes;
}

TEST(StringsTable, ReadsUpToTheFirstFaultAndTellsItsLine) {
  struct Case {
    std::string bytes;
    Entries entries;
    StringsError error = {};
  };
  const std::u16string wide = u"k=\"ü𝄞\";";
  const std::string start = "a=b;\n\r\r\n";  // The next line is the fourth.
  const Entries ab = {{"a", "b"}};
  std::vector<Case> cases = {
      {R"("a b"="c";d=e.f-1:$_/;"g" = h ;)", {{"a b", "c"}, {"d", "e.f-1:$_/"}, {"g", "h"}}},
      {" \t\r\n\v\fa=1;b;a=3;\"\"=\"\";", {{"", ""}, {"a", "3"}, {"b", "b"}}},
      {"/* a=1; **/a/**/=// b\r2//x //c\n;//", {{"a", "2//x"}}},
      {R"(a="\"\'\\\/\a\b\f\n\r\t\v";)", {{"a", "\"'\\/\a\b\f\n\r\t\v"}}},
      {"a=\"1\\\n2\\\r\n3\\\r4\n5\r\n6 // /*\";", {{"a", "1234\n5\r\n6 // /*"}}},
      {R"(a="\1019\7\344\777";)", {{"a", "A9\aä\u01FF"}}},
      {R"(a="\u0041\U00e9\u20AC\ud834\uDD1E\uFFFFf";)", {{"a", "Aé€𝄞\uFFFFf"}}},
      {"\xEF\xBB\xBFk=\"ü𝄞\";", {{"k", "ü𝄞"}}},
      {"\xFE\xFF" + utf16(wide), {{"k", "ü𝄞"}}},
      {"\xFF\xFE" + utf16(wide, false), {{"k", "ü𝄞"}}},
      {utf16(wide), {{"k", "ü𝄞"}}},
      {utf16(wide, false), {{"k", "ü𝄞"}}},
      {utf16(u"a=b;\n") + '"', ab, {2, "malformed UTF-16: half a character at the end"}},
      {utf16(u"a=b;\n\xDD1E\xD834"), ab, {2, "malformed UTF-16: an unpaired surrogate"}},
      {start + "\nü=1;", ab, {5, "expected a key"}},
      {start + "k\n\n\"v\";", ab, {4, R"(expected "=" or ";" after the key)"}},
      {start + "k=\"v\n\"\n", ab, {5, R"(expected ";" after the value)"}},
      {start + "k=\n\"v;\n\\", ab, {5, "unterminated string"}},
      {start + "k/**/=\n/*/;\n", ab, {5, "unterminated comment"}},
      {start + "k=\"\n\\8\";", ab, {5, R"(unknown escape after "\")"}},
      {start + R"(k="\U+123";)", ab, {4, R"(expected four hexadecimal digits after "\u")"}},
      {start + R"(k="\ud834\u0041";)", ab, {4, "an escape for half of a surrogate pair"}},
      {start + "k=\"\n" + '\0', ab, {5, "a NUL character"}},
      {start + "k 1\n\xFF", ab, {4, R"(expected "=" or ";" after the key)"}},  // It comes first.
  };
  for (const char* malformed :
       {"\x80", "\xC1\x81", "\xED\xA0\x80", "\xE2\x28\xA1", "\xF4\x90\x80\x80"}) {
    cases.push_back({start + "k=\"\n" + malformed, ab, {5, "malformed UTF-8"}});
  }
  for (const auto& c : cases) {
    SCOPED_TRACE(c.bytes);
    const StringsTable table = parseStrings(c.bytes);
    EXPECT_EQ(table.entries, c.entries);
    EXPECT_EQ(table.error.value_or(StringsError()).message, c.error.message);
    EXPECT_EQ(table.error.value_or(StringsError()).line, c.error.line);
  }
}

}  // namespace vel::test
