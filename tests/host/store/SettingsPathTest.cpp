// Where the settings are kept, by the environment.
#include "host/store/SettingsPath.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <tuple>

namespace vel::test {

TEST(SettingsPath, followsTheEnvironmentWhereItIsAbsolute) {
  const std::string users = std::string(getpwuid(getuid())->pw_dir) + "/.config";
  const std::tuple<const char*, const char*, std::string> cases[] = {
      {"/c", "/h", "/c"}, {"c", "/h", "/h/.config"}, {"", "h", users}};
  for (const auto& [configuration, home, directory] : cases) {
    setenv("XDG_CONFIG_HOME", configuration, 1);
    setenv("HOME", home, 1);
    EXPECT_EQ(settingsPath(), directory + "/velbar/settings.ini");
  }
  unsetenv("XDG_CONFIG_HOME");
  unsetenv("HOME");
  EXPECT_EQ(settingsPath(), users + "/velbar/settings.ini");
}

}  // namespace vel::test
