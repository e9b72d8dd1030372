// The kernel's texts, whole, cut, malformed and hostile.
#include <gtest/gtest.h>

#include <array>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/linux/ControlGroup.h"
#include "platform/linux/CpuList.h"
#include "platform/linux/ProcLoadavg.h"
#include "platform/linux/ProcPidStat.h"
#include "platform/linux/ProcStat.h"
#include "platform/linux/TickCounters.h"
#include "platform/linux/Topology.h"

namespace vel::test {
namespace {

using namespace std::string_literals;

TEST(CpuList, ReadsWhatTheKernelWritesAndNothingElse) {
  CpuList list;
  const std::tuple<std::string_view, std::vector<std::int32_t>> cases[] = {
      {"0\n", {0}}, {"0-2,5,7-8\n", {0, 1, 2, 5, 7, 8}}, {"65535\n", {65535}}};
  for (const auto& [text, expected] : cases) {
    EXPECT_TRUE(list.parse(text)) << text;
    std::vector<std::int32_t> cpus;
    list.forEach([&cpus](std::int32_t cpu) { cpus.push_back(cpu); });
    EXPECT_EQ(cpus, expected);
  }
  for (const std::string_view text : {"", "\n", "0-3", "0-\n", "0,\n", ",0\n", "0x\n", "0\n1\n",
                                      "0,0\n", "3-0\n", "0-65536\n", "99999999999999999999\n"}) {
    EXPECT_FALSE(list.parse(text)) << text;
  }
}

/// "cpu:user,system,idle,nice …", or "-" for a text that is refused.
std::string processors(TickCounters& counters, std::string_view stat) {
  std::ostringstream seen;
  if (!counters.read(stat)) {
    return "-";
  }
  for (const auto& [line, ticks] : counters.processors()) {
    seen << line.cpu << ':' << ticks[0] << ',' << ticks[1] << ',' << ticks[2] << ',' << ticks[3]
         << ' ';
  }
  return seen.str();
}

TEST(ProcStat, ReadsTheProcessorsLines) {
  TickCounters counters;
  const std::string sound = "0:1,93,14,2 7:1,3,9,2 ";
  const char* const stat = "cpu  9 9 9 9\ncpu0 1 2 3 4 10 20 30 40 50 60\ncpu7 1 2 3 4 5\nintr 5\n";
  EXPECT_EQ(processors(counters, stat), sound);
  for (const std::string_view text :
       {"cpu  9 9 9 9\nintr 5\n", "cpu0 1 2 3 4\ncpu1 1 2 3", "cpu0 1 2 3\nintr 5\n",
        "cpu0 1 2 3 4x\nintr 5\n", "cpu0 18446744073709551616 2 3 4\nintr 5\n",
        "cpu65536 1 2 3 4\nintr 5\n", "cpu1 1 2 3 4\ncpu1 1 2 3 4\nintr 5\n"}) {
    EXPECT_EQ(processors(counters, text), "-") << text;
  }
  EXPECT_EQ(processors(counters, stat), sound);
  EXPECT_EQ(parseBootTime("ctxt 1\nbtime 1753430400\nprocesses 2\n"), 1753430400);
  for (const std::string_view text :
       {"ctxt 1\n", "btime 17534", "btime 1x\n", "btime 9223372036854775808\n"}) {
    EXPECT_EQ(parseBootTime(text), std::nullopt) << text;
  }
}

TEST(TickCounters, FollowEachColumnOverAWrapAndBack) {
  constexpr std::uint64_t kEnd = std::uint64_t{1} << 32U;
  // Of one processor, in turn: the columns idle, iowait and irq, and idle and system as counted.
  // Without the first, there is no line for it.
  const std::tuple<const char*, std::optional<std::uint64_t>, std::uint64_t, std::uint64_t,
                   std::uint64_t, std::uint64_t>
      readings[] = {
          {"their sum has more than 32 bits", kEnd - 10, kEnd - 20, 7, 2 * kEnd - 30, 7},
          {"one of them wraps", 5, kEnd - 18, 8, 2 * kEnd - 13, 8},
          {"the other one, too", 7, 3, 9, 2 * kEnd + 10, 9},
          {"back over the wrap", kEnd - 1, 3, 9, 2 * kEnd + 2, 9},
          {"a step back", kEnd - 3, 3, 5, 2 * kEnd, 5},
          {"half of the range forward", kEnd / 2 - 4, 3, 5, 2 * kEnd + kEnd / 2 - 1, 5},
          {"and as far back", kEnd - 4, 3, 5, 2 * kEnd - 1, 5},
          {"going on beyond 32 bits", kEnd + 6, 3, 5, 2 * kEnd + 9, 5},
          {"back from there", 2, 3, 5, kEnd + 5, 5},
          {"up again", kEnd - 9, 3, 5, kEnd - 6, 5},
          {"offline", {}, 0, 0, 0, 0},
          {"back from 0", 1, 0, 2, 1, 2},
      };
  TickCounters counters;
  for (const auto& [what, idle, iowait, irq, idleCounted, systemCounted] : readings) {
    SCOPED_TRACE(what);
    std::ostringstream stat;
    if (idle) {
      stat << "cpu4 0 0 0 " << *idle << ' ' << iowait << ' ' << irq << '\n';
    }
    stat << "cpu9 1 1 1 4000000000\nintr\n";
    const std::string counted =
        "4:0," + std::to_string(systemCounted) + ',' + std::to_string(idleCounted) + ",0 ";
    EXPECT_EQ(processors(counters, stat.str()), (idle ? counted : "") + "9:1,1,4000000000,1 ");
    // Cut short: the other is not offline.
    EXPECT_EQ(processors(counters, "cpu9 1 1 1 1\n"), "-");
  }
}

TEST(ProcLoadavg, DeliversWhatIsWholeFromTheFront) {
  // The averages, how many of them, and the threads, 0 for none.
  const std::tuple<std::string_view, std::array<double, 3>, int, int> cases[] = {
      {"0.20 1.18 1024.00 1/80 11206\n", {0.20, 1.18, 1024}, 3, 80},
      {"0.20 1.18 0.12", {0.20, 1.18}, 2, 0},
      {"0.20 1,18 0.12 1/80 1\n", {0.20}, 1, 80},
      {"0.20 nan 0.12 1/2147483648 1\n", {0.20}, 1, 0},
      {"-0.20 1.18 0.12 1/0 1\n", {}, -1, 0}};
  for (const auto& [text, expected, count, threads] : cases) {
    SCOPED_TRACE(text);
    std::array<double, 3> averages{};
    EXPECT_EQ(parseLoadAverages(text, averages), count);
    EXPECT_EQ(averages, expected);
    EXPECT_EQ(parseThreadCount(text), threads > 0 ? std::optional(threads) : std::nullopt);
  }
}

TEST(Topology, ReadsOneNumberAndTellsCoresOfOneNumberApart) {
  EXPECT_EQ(parseTopologyId("-1\n"), -1);
  for (const std::string_view text : {"", "\n", "7", "7 \n", "7\n7\n", "2147483648\n"}) {
    EXPECT_EQ(parseTopologyId(text), std::nullopt) << text;
  }
  const CoreIdentity a{.package = 0, .core = 7, .firstSibling = 0};
  const CoreIdentity b{.package = 0, .core = 7, .firstSibling = 1};
  EXPECT_EQ(arrangeProcessors({{0, a}, {1, b}, {2, a}, {3, b}}).onlineCores, 2U);
}

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
      {"913 a b) S 1 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 3 0 4 1 7 0\n", ""},
      {"0 (a) S 1 9 9 0 -1 4 1 0 0 0 1 3 5 6 20 0 3 0 4 1 7 0\n", ""},
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
      // The older hierarchies, alone and beside the unified one.
      {"12:cpu,cpuacct:/x.service\n1:name=systemd:/user.slice/session-2.scope\n",
       "/user.slice/session-2.scope"},
      {"1:name=systemd:/system.slice/a.service\n0::/\n", "/system.slice/a.service"},
      // No unit.
      {"", ""},
      {"0::/.scope/.service\n", ""},
      {"9:name=systemd:/\n4:memory:/a.service\n1:cpu:/docker/4f\n0::/\n", ""},
      {"0:\n:\n\n0::a.service\n", ""},
      {"0::/system.slice/a.service", ""}};
  for (const auto& [text, expected] : cases) {
    EXPECT_EQ(unitPath(text), expected) << text;
  }
}

}  // namespace
}  // namespace vel::test
