// Where things stand on the display, at sizes from one character to more than anyone has.
#include "host/terminal/Layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <cmath>
#include <fstream>
#include <optional>
#include <regex>
#include <string>
#include <utility>
#include <vector>

#include "host/terminal/Bar.h"
#include "host/terminal/GaugeRow.h"
#include "host/terminal/HistoryGraph.h"
#include "host/terminal/PlainLines.h"
#include "host/terminal/ProcessLines.h"
#include "host/terminal/RunningProcessors.h"
#include "host/terminal/Text.h"
#include "platform/foundation/StringsTable.h"
#include "platform/headless/HeadlessView.h"
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

const ProcessList kProcesses{ProcessList::Ranking::now,
                             std::vector<ProcessEntry>(5, {"p", "1", "2.0%"})};

using Series = std::vector<std::vector<float>>;

/// With these values, the latest last, in percent.
class Graph : public HeadlessView<VELGraphMultiple> {
 public:
  explicit Graph(const Series& series) {
    for (std::size_t i = 0; i < series.size(); ++i) {
      for (const float value : series[i]) {
        values_.addNewValueForGraphAtIndex(value, static_cast<std::int64_t>(i));
      }
    }
    setHistory(&values_);
    setNumberOfGraphs(static_cast<std::int64_t>(series.size()));
  }

 private:
  VELGraphArraysMultiple values_;
};

/// Its first character but blanks; " " for an empty line and "_" for one of blanks.
wchar_t firstOf(const std::wstring& line) {
  const std::size_t first = line.find_first_not_of(L' ');
  return line.empty() ? L' ' : first == std::wstring::npos ? L'_' : line[first];
}

class LayoutTest : public ::testing::Test {
 protected:
  LayoutTest() { std::setlocale(LC_CTYPE, "C.UTF-8"); }

  [[nodiscard]] std::vector<std::wstring> shown(const Readings& readings, LayoutSize size) const {
    std::vector<std::wstring> texts;
    const Content content{item_, readings, processes_, graph_, alertRule_, alert_};
    const Page page = layOut(content, labels_, locale_, size, {true, keys_});
    for (const Line& line : page.lines) {
      texts.emplace_back();
      for (const Span& span : line) {
        texts.back() += span.text;
      }
      EXPECT_LE(widthOf(texts.back()), size.columns);
    }
    EXPECT_LE(texts.size(), static_cast<std::size_t>(size.rows));
    EXPECT_EQ(page.hasProcesses, std::any_of(texts.begin(), texts.end(), [](const auto& text) {
                return text.find(L"Top processes, now") != std::wstring::npos;
              }));
    return texts;
  }

  Item item_{"CPU", "62%", {{0.625F, false}}};
  Labels labels_{nullptr};
  Locale locale_;
  std::vector<KeyDescription> keys_{{L"q", L"quit", L""}};
  std::optional<ProcessList> processes_;
  const VELGraphMultiple* graph_ = nullptr;
  std::optional<AlertRule> alertRule_;
  std::wstring alert_;
};

TEST_F(LayoutTest, FitsAnySizeAndShowsEveryProcessorOnce) {
  ASSERT_EQ(widthOf(kWide), 10);
  labels_.user = labels_.tasks = kWide;
  for (const std::uint32_t processors : {0U, 1U, 2U, 8U, 64U, 65U, 256U, 1024U}) {
    // With the list and the graph at every other number of processors.
    const Graph graph(Series(processors, {20.0F, 80.0F}));
    const bool rich = processes_.has_value();
    processes_ = rich ? std::nullopt : std::optional(kProcesses);
    graph_ = rich ? nullptr : &graph;
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
        L"CUSNI 0 Lq", L"CUSNI 0 L q", L"CUSNI CC L  q"}) {
    std::wstring found;
    for (const std::wstring& line : shown(readingsOf(2), {80, static_cast<int>(letters.size())})) {
      found += firstOf(line);
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

TEST_F(LayoutTest, ProcessesAndGraphHaveRoomBeforeComfort) {
  const Graph graph(Series{{50.0F}});
  graph_ = &graph;
  processes_ = kProcesses;
  keys_ = {{L"q", L"quit", L""},
           {L"t", L"ranking", L""},
           {L"g", L"graph", L""},
           {L"< >", L"", L""},
           {L"?", L"help", L""}};
  struct Case {
    int rows;
    std::uint32_t processors;
    std::wstring letters;  ///< the first of each line
  };
  for (const auto& [rows, processors, letters] : {
           Case{13, 2, L"CUSNI CC L  q"},
           {14, 2, L"CUSNI 0 G▄0 Lq"},
           {18, 2, L"CUSNI 0 L Tppppp q"},
           {22, 2, L"CUSNI 0 G_█0 L Tpppppq"},
           {22, 64, L"CUSNI 081 G▄0L Tpppppq"},
           {30, 2, L"CUSNI CC G___███0 L Tppppp   q"},
       }) {
    SCOPED_TRACE(rows);
    std::wstring found;
    for (const std::wstring& line : shown(readingsOf(processors), {80, rows})) {
      found += firstOf(line);
    }
    EXPECT_EQ(found, letters);
  }
  const auto hintsAt = [this](int columns) { return shown(readingsOf(2), {columns, 18}).back(); };
  EXPECT_EQ(hintsAt(80), L" q quit  t ranking  g graph  ? help");
  EXPECT_EQ(hintsAt(33), L"q quit  t ranking  ? help");
  EXPECT_EQ(hintsAt(13), L"q quit");
}

TEST_F(LayoutTest, AnAlertStandsAboveTheItem) {
  alert_ = L"03:12  p is busy";
  alertRule_ = {30, 10};
  const auto lineAt = [this](LayoutSize size, std::size_t row) {
    return shown(readingsOf(2), size)[row];
  };
  EXPECT_EQ(lineAt({80, 24}, 0), L" 03:12  p is busy  x dismiss");
  EXPECT_EQ(lineAt({80, 24}, 1).substr(0, 5), L" CPU ");
  EXPECT_EQ(lineAt({80, 24}, 10),
            L" Load - - -    Tasks -    Threads -    Up -    Alert 30 % 10 min");
  EXPECT_EQ(lineAt({26, 2}, 0), L"03:12  p is busy");
  EXPECT_EQ(lineAt({9, 2}, 0), L"03:12  p ");
  EXPECT_EQ(lineAt({20, 1}, 0), L"CPU         62%");
  keys_.clear();
  EXPECT_EQ(lineAt({80, 24}, 0), L" 03:12  p is busy");
}

TEST_F(LayoutTest, HelpIsAsWholeAsCanBe) {
  keys_ = {{L"q", L"", L"end the program"}, {L"?", L"", L"this 日本語page"}};
  const auto helpAt = [this](LayoutSize size) {
    std::wstring found;
    for (const Line& line : helpPage(keys_, labels_, size.columns, size.rows)) {
      for (const Span& span : line) {
        found += span.text;
      }
      found += L"|";
    }
    return found;
  };
  EXPECT_EQ(helpAt({19, 6}),
            L" Keys|| q  end the program| ?  this 日本語page|| Any key goes back.|");
  EXPECT_EQ(helpAt({13, 7}),
            L" Keys| q  end the |    program| ?  this |    日本語pag|    e| Any key goes|");
  EXPECT_EQ(helpAt({13, 5}), L" Keys| q  end the p| ?  this 日本| Any key goes|");
}

TEST_F(LayoutTest, NamesOfProcessesAreHarmlessAndAligned) {
  processes_ = ProcessList{
      ProcessList::Ranking::averageSinceStart,
      {{"a\nb\t\x1b[1m\xc2\x9b", "7", "-"},
       {"\xe2\x80\xaex\xe2\x81\xa6\xe2\x80\x8b\xe2\x81\xa9\xe2\x80\xac", "4194304", "12800.0%"},
       {"\xcc\x81"
        "e\xcc\x81",
        "8", "1.5%"},
       {"日本語日本", "9", "1,5%"},
       {"<b>%n\xff\xc3\xe2\x82\xf0\x9f\x98\xff\xff\xff\xff", "10", "1.5%"}}};
  const auto listAt = [this](int columns) {
    std::wstring list;
    for (const Line& line : processLines(*processes_, labels_, columns)) {
      for (const Span& span : line) {
        list += span.text;
      }
      list += L"\n";
    }
    return list;
  };
  EXPECT_EQ(listAt(80),
            L"Top processes, average since start\n"
            L"a?b??[1m?               7         -\n"
            L"?x????            4194304  12800.0%\n"
            L"?e\x301                      8      1.5%\n"
            L"日本語日本              9      1,5%\n"
            L"<b>%n???????????       10      1.5%\n");
  EXPECT_EQ(listAt(20),
            L"Top processes, average since start\n"
            L"a?b??[1m?          -\n"
            L"?x????      12800.0%\n"
            L"?e\x301              1.5%\n"
            L"日本語日本      1,5%\n"
            L"<b>%n?????      1.5%\n");
}

TEST_F(LayoutTest, ALoadAbove70PercentIsBusy) {
  for (const float share : {0.7F, 0.71F}) {
    const Readings readings{share, 0.0F, 0.0F, 0.9F, {}, {}, {}, {}, {}, {}};
    const auto lines =
        layOut({{}, readings, {}, nullptr, {}, {}}, labels_, locale_, {20, 4}, {}).lines;
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

TEST_F(LayoutTest, GraphsShareTheirPlace) {
  struct Case {
    Series series;
    int columns;
    int rows;
    std::wstring drawing;
  };
  const std::vector<float> ramp{0.0F, 25.0F, 71.0F, 100.0F};
  for (const auto& [series, columns, rows, drawing] : {
           Case{{ramp}, 6, 3, L"    !▁█|    !██|···▆!██|"},
           {{ramp, {50.0F, NAN, -5.0F, 900.0F}},
            26,
            2,
            L"          !▃█             !█|·········▄!██  ········█··!█|"},
           {{ramp, ramp, {50.0F}}, 8, 5, L"·····▂!▆█||·····▂!▆█||·······▄|"},
           {{ramp, {1.0F}, {}, {30.0F, 60.0F}, {40.0F}}, 5, 1, L"··▂!▆█|"},
       }) {
    const Graph graph(series);
    std::wstring found;
    for (const Line& line : historyGraph(graph, columns, rows, true)) {
      for (const Span& span : line) {
        found += (span.tone == Tone::busy ? L"!" : L"") + span.text;
      }
      found += L"|";
    }
    EXPECT_EQ(found, drawing);
  }
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
    for (const auto* text :
         {&labels_.rankingExplained, &labels_.coresExplained, &labels_.graphExplained,
          &labels_.alertExplained, &labels_.thresholdExplained, &labels_.durationExplained,
          &labels_.dismissExplained}) {
      EXPECT_LE(widthOf(*text), 73);
    }
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
