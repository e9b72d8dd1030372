// Where the settings are kept, by the environment.
#include "host/store/SettingsPath.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include <cstdlib>

namespace vel::test {
namespace {

void setVariable(const char* name, const char* value) {
  value != nullptr ? setenv(name, value, 1) : unsetenv(name);
}

TEST(SettingsPath, followsTheEnvironmentWhereItIsAbsolute) {
  const std::string home = getpwuid(getuid())->pw_dir;
  const struct {
    const char* configuration;
    const char* home;
    std::string directory;
  } cases[] = {
      {"/c", "/h", "/c"},
      {nullptr, "/h", "/h/.config"},
      {"", "/h", "/h/.config"},
      {"c", "/h", "/h/.config"},
      {nullptr, "", home + "/.config"},
      {nullptr, nullptr, home + "/.config"},
  };
  for (const auto& [configuration, itsHome, directory] : cases) {
    setVariable("XDG_CONFIG_HOME", configuration);
    setVariable("HOME", itsHome);
    EXPECT_EQ(settingsPath(), directory + "/velbar/settings.ini");
  }
}

}  // namespace
}  // namespace vel::test
