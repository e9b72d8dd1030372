// Module bundles that are broken.
#include "host/BundleLoader.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <string>

namespace vel::test {
namespace {

TEST(BundleLoader, NamesTheFileAndWhatIsExpected) {
  std::string name = (std::filesystem::temp_directory_path() / "velbundle-XXXXXX").string();
  const std::filesystem::path directory = mkdtemp(name.data());
  std::filesystem::create_symlink(VEL_SCRIPTED_MODULE, directory / "module.so");
  std::filesystem::create_symlink(VEL_FACELESS_LIBRARY, directory / "faceless.so");
  std::ofstream(directory / "text.so") << "no library";

  const std::string library = R"("contract" = "2"; "library" = )";
  // Entries of Info.strings, and how the message goes on after the directory.
  const std::map<std::string, std::string> cases = {
      {"", R"(Info.strings: "contract" is missing, expected "2")"},
      // The version comes first: this library is not even opened.
      {R"("contract" = "1"; "library" = "text.so";)", R"(Info.strings: "contract" is "1", exp)"},
      {R"("contract" = "2";)", R"(Info.strings: "library" is missing, expected the name)"},
      {library + R"("../module.so";)", R"(Info.strings: "library" is "../module.so", expected)"},
      {library + R"("gone.so";)", "gone.so: no such file, expected the module's"},
      {library + R"("text.so";)", "text.so: not a shared library, expected the"},
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
  std::filesystem::remove_all(directory);
}

}  // namespace
}  // namespace vel::test
