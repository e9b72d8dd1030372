// Bundles whole and broken.
#include "platform/foundation/Bundle.h"

#include <gtest/gtest.h>

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
  struct Case {
    std::string info, german;  ///< the files' texts
    std::string yes;           ///< "yes" localised; empty if the bundle does not open
    std::string problem;       ///< after the bundle's directory
  };
  const std::string good = R"("identifier" = "org.x"; "extra" = "1";)";
  const std::vector<Case> cases = {
      {good, "yes=ja;", "ja", ""},
      {good, "no=nein;", "yes", ""},
      {good, "", "YES", ""},
      {good, "yes=ja;\n;", "ja", "/de.lproj/Localizable.strings:2: expected a key"},
      {"", "", "", "/Info.strings: cannot be read: No such file or directory"},
      {"a=b;\n\n;", "", "", "/Info.strings:3: expected a key"},
      {"identifier=\"\";", "", "", R"(/Info.strings: no "identifier")"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.yes + c.problem);
    const TemporaryDirectory directory;
    write(directory.path + "/Info.strings", c.info);
    write(directory.path + "/de.lproj/Localizable.strings", c.german);
    write(directory.path + "/en.lproj/Localizable.strings", "yes=YES;");
    std::vector<Bundle::Problem> problems;
    const auto bundle = Bundle::open(directory.path, Locale(".", {"de"}), problems);
    problems.resize(1);
    EXPECT_EQ(problems[0], c.problem.empty() ? "" : directory.path + c.problem);
    EXPECT_EQ(bundle ? bundle->localizedString("yes") : "", c.yes);
    EXPECT_TRUE(!bundle || (bundle->identifier() == "org.x" && bundle->info("extra") == "1"));
  }
}

}  // namespace vel::test
