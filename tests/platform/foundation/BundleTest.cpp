// Bundles whole and broken.
#include "platform/foundation/Bundle.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>

#include "support/TemporaryDirectory.h"

namespace vel::test {

/// No file without a text.
static void write(const std::filesystem::path& file, const std::string& text) {
  if (!text.empty()) {
    std::filesystem::create_directories(file.parent_path());
    std::ofstream(file) << text;
  }
}

TEST(Bundle, Opens) {
  const std::string good = R"("identifier" = "org.x"; "extra" = "1";)";
  // The files' texts; "yes" localised, empty if the bundle does not open; and the problem, after
  // the bundle's directory.
  const std::vector<std::array<std::string, 4>> cases = {
      {good, "yes=ja;", "ja", ""},
      {good, "no=nein;", "yes", ""},
      {good, "", "YES", ""},
      {good, "yes=ja;\n;", "ja", "/de.lproj/Localizable.strings:2: expected a key"},
      {"", "", "", "/Info.strings: cannot be read: No such file or directory"},
      {"a=b;\n\n;", "", "", "/Info.strings:3: expected a key"},
      {"identifier=\"\";", "", "", R"(/Info.strings: no "identifier")"},
  };
  for (const auto& [info, german, yes, problem] : cases) {
    SCOPED_TRACE(yes + problem);
    const TemporaryDirectory directory;
    write(directory.path + "/Info.strings", info);
    write(directory.path + "/de.lproj/Localizable.strings", german);
    write(directory.path + "/en.lproj/Localizable.strings", "yes=YES;");
    std::vector<Bundle::Problem> problems;
    const auto bundle = Bundle::open(directory.path, Locale(".", {"de"}), problems);
    problems.resize(1);
    EXPECT_EQ(problems[0], problem.empty() ? "" : directory.path + problem);
    EXPECT_EQ(bundle ? bundle->localizedString("yes") : "", yes);
    EXPECT_TRUE(!bundle || (bundle->identifier() == "org.x" && bundle->info("extra") == "1"));
  }
}

}  // namespace vel::test
