// Where things stand on the display, at sizes from one character to more than anyone has.
#include "host/terminal/Layout.h"

#include <gtest/gtest.h>

#include <clocale>
#include <fstream>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "host/terminal/Bar.h"
#include "host/terminal/GaugeRow.h"
#include "host/terminal/PlainLines.h"
#include "host/terminal/RunningProcessors.h"
#include "host/terminal/Text.h"
#include "platform/foundation/StringsTable.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

/// Wider on the display than it is long.
const std::wstring kWide = L"ユーザー率";

/// The total is 62.5 %; half of the processors have 25 % and half 75 %.
Readings readingsOf(std::uint32_t processors) {
  CPUData record;
  record.set(Reading::userCPU, 0.5F);
  record.set(Reading::systemCPU, 0.125F);
  record.set(Reading::niceCPU, 0.0F);
  record.set(Reading::idleCPU, 0.375F);
  // With one more that does not run, and the highest number first in the record.
  record.set(ProcessorReading::userCPUAll, processors, 1.0F);
  std::vector<RunningProcessor> running;
  for (std::uint32_t i = 0; i < processors; ++i) {
    record.set(ProcessorReading::userCPUAll, i, i % 2 == 0 ? 0.25F : 0.75F);
    running.push_back({static_cast<std::int32_t>(i), processors - 1 - i});
  }
  Readings readings;
  readings.read(record, running);
  return readings;
}

/// How often each processor is among the numbers of a gauge, "CPU 3" or "4-7".
std::vector<int> timesShown(const std::vector<std::wstring>& lines, std::size_t processors) {
  std::vector<int> times(processors);
  const std::wregex gauge(LR"(\b(\d+)(-(\d+))? +[\d.]+ %)");
  for (const std::wstring& line : lines) {
    for (std::wsregex_iterator match(line.begin(), line.end(), gauge), end; match != end; ++match) {
      const std::size_t last = std::stoul((*match)[(*match)[3].matched ? 3 : 1]);
      for (std::size_t processor = std::stoul((*match)[1]); processor <= last; ++processor) {
        ++times.at(processor);
      }
    }
  }
  return times;
}

class LayoutTest : public ::testing::Test {
 protected:
  LayoutTest() { std::setlocale(LC_CTYPE, "C.UTF-8"); }

  [[nodiscard]] std::vector<std::wstring> shown(const Readings& readings, LayoutSize size) const {
    std::vector<std::wstring> texts;
    for (const Line& line : layOut(item_, readings, labels_, locale_, size, {true, true})) {
      texts.emplace_back();
      for (const Span& span : line) {
        texts.back() += span.text;
      }
      EXPECT_LE(widthOf(texts.back()), size.columns);
    }
    EXPECT_LE(texts.size(), static_cast<std::size_t>(size.rows));
    return texts;
  }

  Item item_{"CPU", "62%", {{0.625F, false}}};
  Labels labels_{nullptr};
  Locale locale_;
};

TEST_F(LayoutTest, FitsAnySizeAndShowsEveryProcessorOnce) {
  ASSERT_EQ(widthOf(kWide), 10);
  labels_.user = labels_.tasks = kWide;
  for (const std::uint32_t processors : {0U, 1U, 2U, 8U, 64U, 65U, 256U, 1024U}) {
    item_.gauges.resize(processors);
    for (const int columns : {0, 1, 2, 4, 5, 6, 7, 8, 16, 17, 25, 39, 40, 41, 79, 80, 200}) {
      for (int rows = 0; rows <= 60; rows += rows < 26 ? 1 : 17) {
        SCOPED_TRACE(::testing::Message() << processors << " at " << columns << "x" << rows);
        const auto lines = shown(readingsOf(processors), {columns, rows});
        if (columns >= 40 && rows >= 12) {
          EXPECT_EQ(timesShown(lines, processors), std::vector<int>(processors, 1));
        }
      }
    }
  }
}

TEST_F(LayoutTest, LeavesOutWhatMattersLeast) {
  // The first letter of each line.
  for (const std::wstring letters :
       {L"C", L"CU", L"CUS", L"CUSI", L"CUSIL", L"CUSI0L", L"CUSNI0L", L"CUSNI0Lq", L"CUSNI 0Lq",
        L"CUSNI 0 Lq", L"CUSNI 0 L q", L"CUSNI CC L q"}) {
    std::wstring found;
    for (const std::wstring& line : shown(readingsOf(2), {80, static_cast<int>(letters.size())})) {
      found += line.empty() ? L' ' : line[line.find_first_not_of(L' ')];
    }
    EXPECT_EQ(found, letters);
  }
  const auto itemAt = [this](int columns) { return shown(readingsOf(2), {columns, 1})[0]; };
  EXPECT_EQ(itemAt(4), L"██▌·");
  EXPECT_EQ(itemAt(6), L"   62%");
  EXPECT_EQ(itemAt(20), L"CPU         62%");
  // Processors that are too many share gauges, which show their mean.
  EXPECT_EQ(shown(readingsOf(33), {40, 12})[7], L"  8-15  50 % ███···     32  25 % █▌····");

  item_.text = "";
  EXPECT_EQ(itemAt(6), L"███▊··");
  item_.gauges.clear();
  EXPECT_EQ(itemAt(20), L"CPU            ");
  item_.name = "";
  EXPECT_EQ(itemAt(20), L"User     50.0 %");
}

TEST_F(LayoutTest, ALoadAbove70PercentIsBusy) {
  for (const float share : {0.7F, 0.71F}) {
    const Readings readings{share, 0.0F, 0.0F, 0.9F, {}, {}, {}, {}, {}, {}};
    const auto lines = layOut({}, readings, labels_, locale_, {20, 4}, {});
    EXPECT_EQ(lines[0].back().tone == Tone::busy, share > 0.7F);
    EXPECT_NE(lines[2].back().tone, Tone::busy) << "idle";
  }
}

TEST_F(LayoutTest, GaugesInARowShareColumnsOnlyWhereTheyMust) {
  const std::vector<Item::Gauge> gauges{{0.0F}, {0.5F}, {0.71F, true}, {1.0F, true}, {0.06F}};
  // Before each span's text the first letter of its tone, with "i" for gaugeIdle.
  const auto pieces = [&gauges](int columns, bool blocks) {
    std::wstring found;
    for (const Span& span : gaugeRow(gauges, columns, blocks)) {
      found += L"nsfgib"[static_cast<std::size_t>(span.tone)] + span.text;
    }
    return found;
  };
  EXPECT_EQ(pieces(5, true), L"f·g▄b▆█f·");
  EXPECT_EQ(pieces(4, true), L"g▄b█f·");
  EXPECT_EQ(pieces(0, false), L"b@");
  EXPECT_EQ(pieces(9, false), L"f.g+b#@f.");
}

TEST_F(LayoutTest, PlainLine) {
  EXPECT_EQ(plainLine(readingsOf(2)),
            "cpu  62.5 %  user  50.0 %  system  12.5 %  nice   0.0 %  idle  37.5 %  "
            "load     -     -     -  tasks     -  threads     -  up -\n");
}

TEST_F(LayoutTest, EveryLanguageHasEveryTextAndStaysAligned) {
  const auto textsOf = [](const std::string& language) {
    std::ifstream file(VEL_HOST_RESOURCES "/" + language + ".lproj/Localizable.strings");
    return parseStrings(std::string(std::istreambuf_iterator<char>(file), {})).entries;
  };
  for (const std::string language : {"en", "de", "fr", "es"}) {
    SCOPED_TRACE(language);
    for (const auto& [key, english] : textsOf("en")) {
      EXPECT_TRUE(textsOf(language).contains(key)) << key;
    }
    locale_ = Locale(",", {language});
    std::vector<Bundle::Problem> problems;
    const auto bundle = Bundle::open(VEL_HOST_RESOURCES, locale_, problems);
    labels_ = Labels(&*bundle);
    labels_.nice = kWide;
    const auto lines = shown(readingsOf(2), {80, 24});
    for (const std::size_t row : {1U, 2U, 3U, 4U, 6U, 7U}) {
      EXPECT_EQ(widthOf(lines[row].substr(0, lines[row].find(L'%'))),
                widthOf(lines[0].substr(0, lines[0].find(L'%'))));
    }
  }
}

TEST_F(LayoutTest, BarsAreExactToAnEighthOfAColumn) {
  EXPECT_EQ(Bar(0.46875F, 4, true).filled, L"█▉");
  EXPECT_EQ(Bar(0.46875F, 4, false).filled, L"##");
  EXPECT_EQ(Bar(9.0F, 4, false).track, L"");
}

TEST_F(LayoutTest, TextIsDecodedToWhatTheTerminalCanShow) {
  // Sound, control characters, too long a form, a surrogate, cut short, no lead, beyond Unicode.
  EXPECT_EQ(decode("è日😀 a\x1b[0m\n\xc2\x9b \xc0\xaf \xed\xa0\x80 \xe2\x82 \xff \xf4\x90\x80\x80"),
            L"è日😀 a?[0m?? ?? ? ?? ? ?");
}

/// "number=index …"
std::string numbersOf(RunningProcessors& running) {
  std::string result;
  for (const auto& [number, index] : running.ofThisRefresh()) {
    result += std::to_string(number) + "=" + std::to_string(index) + " ";
  }
  return result;
}

TEST(RunningProcessors, FollowTheRecordAsProcessorsComeAndGo) {
  ScriptedKernel kernel;
  kernel.identities = {0, 4, 1, 5};
  kernel.processors.resize(4);
  kernel.logical = 4;
  RunningProcessors running(kernel);
  const std::string all = "0=0 1=2 4=1 5=3 ";
  EXPECT_EQ(numbersOf(running), all);
  kernel.processors[1].running = false;
  kernel.logical = 3;
  EXPECT_EQ(numbersOf(running), all);  // the sample of the change is left out of the record
  EXPECT_EQ(numbersOf(running), "0=0 1=1 5=2 ");
  kernel.ticksReadable = false;
  kernel.logical = 2;
  numbersOf(running);
  EXPECT_EQ(numbersOf(running), "0=0 1=1 ");
}

}  // namespace
}  // namespace vel::test
