// What is said of a switching mode that does not hold or has no effect.
#include "host/session/SwitchingHint.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vel::test {
namespace {

using Kind = SwitchingProblem::Kind;

TEST(SwitchingHint, NamesTheFlagTheFileAndTheRemedy) {
  struct Case {
    SwitchingHint hint;
    SwitchingHint german;
    std::string report;
    std::string text;
  };
  std::vector<Bundle::Problem> problems;
  const auto german = Bundle::open(VEL_HOST_RESOURCES, Locale(",", {"de"}), problems);
  const auto of = [&german](Kind kind, const char* file, std::errc error, const char* report,
                            const char* text) {
    const SwitchingProblem problem{kind, file, std::make_error_code(error)};
    return Case{switchingHint(problem, "--discrete", nullptr),
                switchingHint(problem, "--discrete", &*german), report, text};
  };
  const auto ofNoEffect = [&german](bool isSwitchable, const char* report, const char* text) {
    return Case{noEffectHint(isSwitchable, "--discrete", nullptr),
                noEffectHint(isSwitchable, "--discrete", &*german), report, text};
  };
  for (const auto& [hint, translated, report, text] : {
           of(Kind::notPermitted, "/%1 %3", std::errc::permission_denied,
              "--discrete: /%1 %3: Permission denied; root, or a rule that lets a group of yours "
              "write it, is needed",
              "--discrete: it takes root, or a rule that lets a group of yours write /%1 %3."),
           of(Kind::notSupported, "/%1 %3", std::errc::no_such_file_or_directory,
              "--discrete: /%1 %3: No such file or directory; it takes a kernel with "
              "vga_switcheroo",
              "--discrete: it takes a kernel with vga_switcheroo, for /%1 %3."),
           of(Kind::notDynamic, "/%1 %3/control", {},
              "--discrete: /%1 %3/control: the kernel is to leave the discrete graphics "
              "processor's power on; root can write \"auto\" there",
              "--discrete: the kernel is to leave the discrete processor’s power on. Root can "
              "write “auto” to /%1 %3/control."),
           of(Kind::notDynamic, "/%1 %3/switch", {},
              "--discrete: /%1 %3/switch: the driver of the discrete graphics processor does not "
              "power it up and down by itself",
              "--discrete: the discrete processor’s driver does not power it up and down by itself "
              "(/%1 %3/switch)."),
           ofNoEffect(true,
                      "--discrete: has no effect until the preferences show the graphics processor "
                      "in use",
                      "--discrete: has no effect until the preferences show the graphics processor "
                      "in use."),
           ofNoEffect(false,
                      "--discrete: this machine does not have two graphics processors to switch "
                      "between",
                      "--discrete: it takes two graphics processors."),
       }) {
    EXPECT_EQ(hint.report, report);
    EXPECT_EQ(hint.notification.title, "Graphics mode not set");
    EXPECT_EQ(hint.notification.informativeText, text);
    EXPECT_EQ(translated.report, report);
    EXPECT_EQ(translated.notification.title, "Grafikmodus nicht gesetzt");
    EXPECT_NE(translated.notification.informativeText, text);
  }
}

}  // namespace
}  // namespace vel::test
