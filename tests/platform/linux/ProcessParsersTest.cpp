// The texts that the kernel writes for each process, whole, cut and hostile.
#include <gtest/gtest.h>

#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "platform/linux/ControlGroup.h"
#include "platform/linux/ProcPidStat.h"

namespace vel::test {
namespace {

using namespace std::string_literals;

std::string shown(const std::optional<ProcPidStat>& stat) {
  std::ostringstream text;
  if (stat) {
    text << stat->pid << '<' << stat->name << '>' << stat->state << ' ' << stat->parent << ' '
         << stat->userTicks << ' ' << stat->systemTicks << ' ' << stat->threads << ' '
         << stat->startTicks << ' ' << stat->virtualBytes << ' ' << stat->residentPages
         << (stat->isKernelThread() ? " kernel" : "") << (stat->hasEnded() ? " ended" : "");
  }
  return text.str();
}

// What follows the name, up to the resident pages.
constexpr const char* kRest =
    " S 1 913 913 0 -1 4194560 100 0 0 0 12 34 5 6 20 0 3 0 4711 18446744073709551615 77";
constexpr const char* kShownRest = "S 1 12 34 3 4711 18446744073709551615 77";

TEST(ProcPidStat, TakesAnyNameForWhatItIs) {
  for (const std::string& name : {"bash"s, ""s, ")"s, "("s, "a) S 2 ("s, ")\n\x1b[31m ("s,
                                  "\xC3\xA9\xFF\t"s, "kworker/u16:3-events_unbound"s}) {
    EXPECT_EQ(shown(parseProcPidStat("913 (" + name + ')' + kRest + " 1844 0 0\n")),
              "913<" + name + '>' + kShownRest);
  }
}

TEST(ProcPidStat, ReadsOtherProcessesAndRefusesWhatIsMalformed) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"2 (kthreadd) S 0 0 0 0 -1 2129984 0 0 0 0 0 2 0 0 20 0 1 0 12 0 0 184 0\n",
       "2<kthreadd>S 0 0 2 1 12 0 0 kernel"},
      {"7 (x) Z 3 7 7 0 -1 4227084 0 0 0 0 9 8 0 0 -20 19 1 0 5 0 0\n",
       "7<x>Z 3 9 8 1 5 0 0 ended"},
      {"7 (x) R 3 7 7 0 -1 0 0 0 0 0 9 8 0 0 20 0 1 0 5 6 -2 0\n", "7<x>R 3 9 8 1 5 6 0"},
      {"913 a b) S 1 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 3 0 4 1 7 0\n", ""},
      {"0 (a) S 1 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 3 0 4 1 7 0\n", ""},
      {"9 (a) \n 1 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 3 0 4 1 7 0\n", ""},
      {"9 (a) S -1 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 3 0 4 1 7 0\n", ""},
      {"9 (a) S 1 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 -3 0 4 1 7 0\n", ""},
      {"9 (a) S 2147483648 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 3 0 4 1 7 0\n", ""}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(shown(parseProcPidStat(text)), expected) << text;
  }
  const std::string whole = "913 (a b)"s + kRest;
  for (std::size_t size = 0; size <= whole.size(); ++size) {
    EXPECT_EQ(shown(parseProcPidStat(whole.substr(0, size))), "") << size;
  }
}

TEST(ControlGroup, FindsTheUnit) {
  const std::pair<std::string_view, std::string_view> cases[] = {
      {"0::/user.slice/user-1000.slice/user@1000.service/app.slice/app-gnome-x-12.scope\n",
       "/user.slice/user-1000.slice/user@1000.service/app.slice/app-gnome-x-12.scope"},
      // Groups inside a unit belong to it.
      {"0::/system.slice/docker-4f.scope/init/x\n", "/system.slice/docker-4f.scope"},
      {"0::/system.slice/cron.service (deleted)\n", "/system.slice/cron.service"},
      {"0::/a:b.service\n", "/a:b.service"},
      // The older hierarchies, alone and beside the unified one.
      {"12:cpu,cpuacct:/x.service\n1:name=systemd:/user.slice/session-2.scope\n",
       "/user.slice/session-2.scope"},
      {"1:name=systemd:/system.slice/a.service\n0::/\n", "/system.slice/a.service"},
      {"1:name=systemd:/\n0::/system.slice/a.service\n", "/system.slice/a.service"},
      // No unit.
      {"", ""},
      {"0::/.scope/.service\n", ""},
      {"9:name=systemd:/\n4:memory:/a.service\n1:cpu:/docker/4f\n0::/\n", ""},
      {"1:name=elogind:/c2.scope\n", ""},
      {"0:\n:\n\n0::a.service\n", ""},
      {"0::/system.slice/a.service", ""}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(unitPath(text), expected) << text;
  }
}

}  // namespace
}  // namespace vel::test
