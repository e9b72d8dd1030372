// Module bundles that are broken.
#include "host/BundleLoader.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <string>

#include "support/TemporaryDirectory.h"

namespace vel::test {
namespace {

TEST(BundleLoader, NamesTheFileAndWhatIsExpected) {
  const TemporaryDirectory temporary;
  const std::filesystem::path directory = temporary.path;
  std::filesystem::create_symlink(VEL_SCRIPTED_MODULE, directory / "module.so");
  std::filesystem::create_symlink(VEL_FACELESS_LIBRARY, directory / "faceless.so");

  const std::string library = R"("contract" = "4"; "library" = )";
  // Entries of Info.strings, and how the message goes on after the directory.
  const std::map<std::string, std::string> cases = {
      {"", R"(Info.strings: "contract" is missing, expected "4")"},
      // The version comes first: whether there is a library is not even looked at.
      {R"("contract" = "1"; "library" = "gone.so";)", R"(Info.strings: "contract" is "1", exp)"},
      {R"("contract" = "4";)", R"(Info.strings: "library" is missing, expected the name)"},
      {library + R"("../module.so";)", R"(Info.strings: "library" is "../module.so", expected)"},
      {library + R"("gone.so";)", "gone.so: no such file, expected the module's"},
      {library + R"("faceless.so";)", "faceless.so: no function velCreatePrincipal, expected"},
      {library + R"("module.so"; "creates" = "nothing";)", "module.so: velCreatePrincipal has"},
  };
  for (const auto& [entries, expected] : cases) {
    SCOPED_TRACE(entries);
    std::ofstream(directory / "Info.strings") << R"("identifier" = "a"; )" << entries;
    try {
      (void)BundleLoader(directory, Locale()).createPrincipal();
      ADD_FAILURE() << "not refused";
    } catch (const std::runtime_error& error) {
      const std::string message = error.what();
      EXPECT_TRUE(message.starts_with((directory / expected).string())) << message;
      EXPECT_EQ(message.find('\n'), std::string::npos) << message;
    }
  }
}

}  // namespace
}  // namespace vel::test
