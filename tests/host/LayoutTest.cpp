// Where things stand on the display, at sizes from one character to more than anyone has.
#include "host/terminal/Layout.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <clocale>
#include <fstream>
#include <optional>
#include <regex>
#include <string>
#include <utility>
#include <vector>

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

std::wstring textOf(const Line& line) {
  std::wstring text;
  for (const Span& span : line) {
    text += span.text;
  }
  return text;
}

/// The first character of each line but blanks; " " for an empty line and "_" for one of blanks.
std::wstring firstOf(const std::vector<std::wstring>& lines) {
  std::wstring letters;
  for (const std::wstring& line : lines) {
    const std::size_t first = line.find_first_not_of(L' ');
    letters += line.empty() ? L' ' : first == std::wstring::npos ? L'_' : line[first];
  }
  return letters;
}

class LayoutTest : public ::testing::Test {
 protected:
  LayoutTest() { std::setlocale(LC_CTYPE, "C.UTF-8"); }

  [[nodiscard]] std::vector<std::wstring> shown(const Readings& readings, LayoutSize size) const {
    std::vector<std::wstring> texts;
    const Content content{item_,        readings, processes_, graph_,  alertRule_,
                          hasGPUAlert_, {},       chosen_,    prompt_, promptKeys_};
    const Page page = layOut(content, labels_, locale_, size, {true, keys_});
    for (const Line& line : page.lines) {
      texts.push_back(textOf(line));
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
  bool hasGPUAlert_ = false;
  std::string chosen_;
  std::wstring prompt_;
  std::wstring promptKeys_;
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
  const Graph graph(Series{{50.0F}});
  struct Case {
    int rows;
    std::uint32_t processors;
    bool withProcessesAndGraph;
    std::wstring letters;  ///< the first of each line
  };
  for (const auto& [rows, processors, rich, letters] : {
           Case{2, 2, false, L"CU"},
           {5, 2, false, L"CUSIL"},
           {8, 2, false, L"CUSNI0Lq"},
           {10, 2, false, L"CUSNI 0 Lq"},
           {12, 2, false, L"CUSNI CC L q"},
           {13, 2, true, L"CUSNI CC L  q"},
           {14, 2, true, L"CUSNI 0 G▄0 Lq"},
           {18, 2, true, L"CUSNI 0 L Tppppp q"},
           {22, 64, true, L"CUSNI 081 G▄0L Tpppppq"},
           {30, 2, true, L"CUSNI CC G___███0 L Tppppp   q"},
       }) {
    SCOPED_TRACE(rows);
    processes_ = rich ? std::optional(kProcesses) : std::nullopt;
    graph_ = rich ? &graph : nullptr;
    EXPECT_EQ(firstOf(shown(readingsOf(processors), {80, rows})), letters);
  }
}

TEST_F(LayoutTest, ANarrowDisplayHasTheItemAsTextOrGauges) {
  const auto itemAt = [this](int columns) { return shown(readingsOf(2), {columns, 1})[0]; };
  EXPECT_EQ(itemAt(4), L"██▌·");
  EXPECT_EQ(itemAt(6), L"   62%");
  EXPECT_EQ(itemAt(20), L"CPU         62%");
  item_.badge = "d";
  EXPECT_EQ(itemAt(24), L"CPU         62%  ████▍··");
  EXPECT_EQ(itemAt(25), L"CPU         62%  ██▌· [d]");
  // What is niced is told where there is room for it beside the picture.
  Readings niced = readingsOf(2);
  niced.nice = 0.2683F;
  const auto nicedAt = [&](int columns) { return shown(niced, {columns, 1})[0]; };
  EXPECT_EQ(nicedAt(36), L"CPU         62% + 27% nice  ██▌· [d]");
  EXPECT_EQ(nicedAt(35), itemAt(35));
  niced.nice = 0.02F;
  EXPECT_EQ(nicedAt(36), L"CPU         62% + 2% nice   ██▌· [d]");
  item_.gauges.resize(6);
  EXPECT_EQ(nicedAt(37), itemAt(37));
  niced.nice = 0.004F;
  EXPECT_EQ(nicedAt(80).find(L'+'), std::wstring::npos);
  item_.text = "";
  niced.nice = 0.5F;
  EXPECT_EQ(nicedAt(80), itemAt(80));
  item_ = {};
  EXPECT_EQ(itemAt(20), L"User     50.0 %");
  // Processors that are too many share gauges, which show their mean.
  EXPECT_EQ(shown(readingsOf(33), {40, 12})[6], L"  8-15  50 % ███···     32  25 % █▌····");
  alertRule_ = {30, 10};
  hasGPUAlert_ = true;
  EXPECT_EQ(shown(readingsOf(2), {40, 12})[9], L" Up -    Alert 30 % 10 min    GPU alert");
  keys_ = {
      {L"q", L"quit", L""}, {L"t", L"ranking", L""}, {L"g", L"graph", L""}, {L"?", L"help", L""}};
  EXPECT_EQ(shown(readingsOf(2), {33, 18}).back(), L"q quit  t ranking  ? help");
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
  std::wstring list;
  for (const Line& line : processLines(*processes_, labels_, 80)) {
    list += textOf(line) + L"|";
  }
  EXPECT_EQ(list,
            L"Top processes, average since start|"
            L"a?b??[1m?               7         -|"
            L"?x????            4194304  12800.0%|"
            L"?e\x301                      8      1.5%|"
            L"日本語日本              9      1,5%|"
            L"<b>%n???????????       10      1.5%|");
}

TEST_F(LayoutTest, RowsOfSeveralProcessesSaySoWhereThereIsRoom) {
  const ProcessList list{ProcessList::Ranking::now,
                         {{"a name of 24 characters.", "7", "2.0%", 0.0F, 14},
                          {"make", "8", "1.0%", 0.0F, 1},
                          {"tar", "9", "1.0%", 0.0F, 1000}}};
  const std::pair<int, std::wstring> cases[] = {
      {80, L"a name of 24 characters.    ×14        7     2.0%"},
      {41, L"a name of 24 ch…    ×14        7     2.0%"},
      {40, L"a name of 24 characte…        7     2.0%"},
      {26, L"a name …        7     2.0%"},
      {25, L"a name of 24 ch…     2.0%"}};
  for (const auto& [columns, first] : cases) {
    SCOPED_TRACE(columns);
    const auto lines = processLines(list, labels_, columns);
    EXPECT_EQ(textOf(lines[1]), first);
    EXPECT_EQ(widthOf(lines[2]), widthOf(lines[1]));
    EXPECT_EQ(widthOf(lines[3]), widthOf(lines[1]));
  }
}

TEST_F(LayoutTest, TheChosenRowIsMarkedAndAPromptCoversTheFirstLines) {
  processes_ =
      ProcessList{ProcessList::Ranking::now, {{"first", "7", "2%"}, {"second", "8", "1%"}}};
  chosen_ = "8";
  auto lines = shown(readingsOf(2), {80, 24});
  const auto isList = [](const std::wstring& line) {
    return line.ends_with(L"Top processes, now");
  };
  auto list = std::find_if(lines.begin(), lines.end(), isList);
  EXPECT_EQ(list[1], L" first                   7       2%");
  EXPECT_EQ(list[2], L">second                  8       1%");
  const std::wstring item = lines[0];
  lines = shown(readingsOf(2), {30, 24});
  list = std::find_if(lines.begin(), lines.end(), isList);
  EXPECT_EQ(list[1], L" first              7       2%");
  EXPECT_EQ(list[2], L">second             8       1%");

  prompt_ = L"End “make” and the 13 processes it started?";
  promptKeys_ = L"y end  f force  n no";
  lines = shown(readingsOf(2), {80, 24});
  EXPECT_EQ(lines[0], L" End “make” and the 13 processes it started?  y end  f force  n no");
  EXPECT_EQ(lines[1].substr(0, 5), L" User");
  lines = shown(readingsOf(2), {44, 24});
  EXPECT_EQ(lines[0], L" End “make” and the 13 processes it ");
  EXPECT_EQ(lines[1], L" started?  y end  f force  n no");
}

TEST_F(LayoutTest, ALoadAbove70PercentIsBusy) {
  for (const float share : {0.7F, 0.71F}) {
    const Readings readings{share, 0.0F, 0.0F, 0.9F, {}, {}, {}, {}, {}, {}};
    const auto lines = layOut({{}, readings, {}, nullptr, {}, false, {}, {}, {}, {}}, labels_,
                              locale_, {20, 4}, {})
                           .lines;
    EXPECT_EQ(lines[0].back().tone == Tone::busy, share > 0.7F);
    EXPECT_NE(lines[2].back().tone, Tone::busy) << "idle";
  }
}

TEST_F(LayoutTest, PlainLine) {
  EXPECT_EQ(plainLine(readingsOf(2)),
            "cpu  62.5 %  user  50.0 %  system  12.5 %  nice   0.0 %  idle  37.5 %  "
            "load     -     -     -  tasks     -  threads     -  up -\n");
}

TEST_F(LayoutTest, EveryLanguageHasEveryText) {
  const auto textsOf = [](const std::string& language) {
    std::ifstream file(VEL_HOST_RESOURCES "/" + language + ".lproj/Localizable.strings");
    return parseStrings(std::string(std::istreambuf_iterator<char>(file), {})).entries;
  };
  for (const std::string language : {"en", "de", "fr", "es"}) {
    SCOPED_TRACE(language);
    for (const auto& [key, english] : textsOf("en")) {
      EXPECT_TRUE(textsOf(language).contains(key)) << key;
    }
  }
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
  RunningProcessors running(kernel);
  const std::string all = "0=0 1=2 4=1 5=3 ";
  EXPECT_EQ(numbersOf(running), all);
  kernel.processors[1].running = false;
  EXPECT_EQ(numbersOf(running), all);  // the sample of the change is left out of the record
  EXPECT_EQ(numbersOf(running), "0=0 1=1 5=2 ");
  kernel.identities = {0, -1, 2, 5};  // another one for it, of which the module needs no count
  EXPECT_EQ(numbersOf(running), "0=0 2=1 5=2 ");
  kernel.processors[1].running = true;
  kernel.identities[1] = 4;
  EXPECT_EQ(numbersOf(running), "0=0 2=1 5=2 ");
  kernel.processors[0].running = false;  // and another change before the next sample
  EXPECT_EQ(numbersOf(running), "0=0 2=1 5=2 ");
  EXPECT_EQ(numbersOf(running), "2=1 4=0 5=2 ");
  kernel.statesReadable = false;
  numbersOf(running);
  EXPECT_EQ(numbersOf(running), "");
}

}  // namespace
}  // namespace vel::test
