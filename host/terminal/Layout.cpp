#include "host/terminal/Layout.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <optional>
#include <string>
#include <string_view>
#include <utility>

#include "host/terminal/Bar.h"
#include "host/terminal/GaugeRow.h"
#include "host/terminal/HistoryGraph.h"
#include "host/terminal/ProcessLines.h"
#include "host/terminal/ProcessorGrid.h"
#include "host/terminal/Text.h"
#include "host/terminal/Uptime.h"

namespace vel {
namespace {

/// As in the menu bar's item: above this share a gauge is red.
constexpr double kBusyShare = 0.7;

constexpr int kLongPercentage = 7;   ///< "100.0 %"
constexpr int kShortPercentage = 5;  ///< "100 %"
constexpr int kItemGap = 4;          ///< between the figures of a status line
constexpr int kLeastBar = 4;
constexpr int kLeastWidthWithMargin = 40;

constexpr int kLeastListWidth = 20;
constexpr int kListRows = 1 + static_cast<int>(ProcessList::kMost);  ///< with the heading
constexpr int kLeastGraph = 3;                                       ///< rows
constexpr int kLargestGraph = 8;
/// The processors may have to share gauges so that the list and the graph have room, but in no
/// fewer rows than these.
constexpr int kLeastProcessorRows = 2;

constexpr const wchar_t* kNoValue = L"-";

Line statusItem(const std::wstring& label, const std::wstring& value) {
  return {{label + L" ", Tone::faint}, {value, Tone::normal}};
}

class Layout {
 public:
  Layout(const Content& content, const Labels& labels, const Locale& locale, LayoutSize size,
         const LayoutStyle& style)
      : item_(content.item),
        readings_(content.readings),
        content_(content),
        labels_(labels),
        locale_(locale),
        style_(style),
        margin_(size.columns >= kLeastWidthWithMargin ? 1 : 0),
        width_(size.columns - 2 * margin_),
        rows_(size.rows),
        rowsLeft_(size.rows) {}

  Page page();

 private:
  struct Gauge {
    const std::wstring& label;
    Readings::Share share;
    Tone barTone = Tone::gauge;
  };

  /// Takes rows for a part of the display, as many as are left.
  int take(int rows);
  /// Takes all these rows, or none where the rest of the display would suffer.
  int takeIfRest(int rows);
  [[nodiscard]] bool hasKeyHints() const { return !style_.keys.empty(); }
  [[nodiscard]] bool hasGraph() const;
  void planProcessors(int extraRows);
  void setLabelWidth(bool withGraph);

  void add(Line line);
  void addAll(std::vector<Line> lines);
  void addBlank(int rows);
  void addGauges(int count, bool withNice);
  void addProcessors();
  void addGraph(int rows);
  void addProcesses();
  void addKeyHints();
  void coverByPrompt();

  [[nodiscard]] Line alertLine() const;
  [[nodiscard]] Line itemLine() const;
  [[nodiscard]] bool hasLabels() const { return width_ >= labelWidth_ + kGap + kLongPercentage; }
  void appendNice(Line& line) const;
  void appendItemPicture(Line& line, int columns) const;
  void appendItemGauges(Line& line, int columns) const;
  [[nodiscard]] std::wstring badgeText() const;
  [[nodiscard]] Line gaugeLine(const Gauge& gauge) const;
  void appendCell(Line& line, int gauge) const;
  void appendBar(Line& line, Readings::Share share, int columns, Tone tone) const;
  [[nodiscard]] std::vector<Line> statusLines() const;

  [[nodiscard]] std::wstring number(std::optional<float> value, int decimals) const;
  [[nodiscard]] std::wstring percentage(Readings::Share share, int decimals) const;
  [[nodiscard]] std::wstring loadText() const;
  [[nodiscard]] float meanOf(int gauge) const;

  const Item& item_;
  const Readings& readings_;
  const Content& content_;
  const Labels& labels_;
  const Locale& locale_;
  const LayoutStyle& style_;
  const int margin_;
  const int width_;
  const int rows_;
  int rowsLeft_;
  int labelWidth_ = 0;
  std::optional<ProcessorGrid> grid_;
  std::vector<Line> lines_;
};

bool isBusy(Readings::Share share) {
  return share && static_cast<double>(*share) > kBusyShare;
}

int Layout::take(int rows) {
  const int taken = std::clamp(rows, 0, rowsLeft_);
  rowsLeft_ -= taken;
  return taken;
}

Page Layout::page() {
  std::vector<Line> status = statusLines();
  // In the order of importance.
  const bool item = !item_.isEmpty() && take(1) == 1;
  const bool alert = !content_.alert.empty() && take(1) == 1;
  const int gauges = take(3);
  status.resize(static_cast<std::size_t>(take(static_cast<int>(status.size()))));
  const bool processes =
      content_.processes && width_ >= kLeastListWidth && takeIfRest(1 + kListRows) > 0;
  int graph = hasGraph() && takeIfRest(1 + kLeastGraph) > 0 ? kLeastGraph : 0;
  planProcessors(hasKeyHints() ? 5 : 3);
  const bool nice = take(1) == 1;
  const bool keyHints = hasKeyHints() && take(1) == 1;
  const int gapBeforeProcessors = grid_ ? take(1) : 0;
  const int gapBeforeStatus = status.empty() ? 0 : take(1);
  graph += graph > 0 ? take(kLargestGraph - kLeastGraph) : 0;

  setLabelWidth(graph > 0);
  if (alert) {
    add(alertLine());
  }
  if (item) {
    add(itemLine());
  }
  addGauges(gauges, nice);
  addBlank(gapBeforeProcessors);
  addProcessors();
  addGraph(graph);
  addBlank(gapBeforeStatus);
  addAll(std::move(status));
  if (processes) {
    addBlank(1);
    addProcesses();
  }
  if (keyHints) {
    addBlank(rows_ - 1 - static_cast<int>(lines_.size()));
    addKeyHints();
  }
  coverByPrompt();
  return {std::move(lines_), processes};
}

/// The chosen one has a mark, in the margin where there is one.
void Layout::addProcesses() {
  const ProcessList& list = *content_.processes;
  const bool makeRoom = margin_ == 0 && !content_.chosen.empty();
  std::vector<Line> lines = processLines(list, labels_, width_ - (makeRoom ? 1 : 0));
  add(std::move(lines.front()));
  for (std::size_t i = 0; i < list.entries.size(); ++i) {
    Line& line = lines[i + 1];
    const bool chosen = !content_.chosen.empty() && list.entries[i].pid == content_.chosen;
    if (chosen) {
      std::for_each(line.begin(), line.end(), [](Span& span) { span.tone = Tone::chosen; });
    }
    if (makeRoom) {
      line.insert(line.begin(), Span{L" "});
    }
    add(std::move(line));
    if (chosen) {
      lines_.back().front().text = L">";
    }
  }
}

void Layout::coverByPrompt() {
  std::vector<Line> lines;
  for (std::wstring_view rest = content_.prompt; !rest.empty();) {
    lines.push_back({{std::wstring(takeLine(rest, width_)), Tone::strong}});
  }
  if (!content_.promptKeys.empty()) {
    const int width = widthOf(content_.promptKeys);
    if (lines.empty() || widthOf(lines.back()) + kGap + width > width_) {
      lines.emplace_back();
    } else {
      lines.back().push_back({std::wstring(kGap, L' ')});
    }
    lines.back().push_back({content_.promptKeys});
  }
  const std::size_t rows = static_cast<std::size_t>(std::max(0, rows_));
  lines.resize(std::min(lines.size(), rows));
  std::vector<Line> covered = std::exchange(lines_, {});
  addAll(std::move(lines));
  for (std::size_t i = lines_.size(); i < covered.size(); ++i) {
    lines_.push_back(std::move(covered[i]));
  }
}

/// The rest are the least of the processors, what is less important than they, and the gaps.
int Layout::takeIfRest(int rows) {
  const int unfolded = ProcessorGrid::rowsUnfolded(readings_.numbers, width_).value_or(0);
  const int rest = std::min(unfolded, kLeastProcessorRows) + (hasKeyHints() ? 4 : 3);
  return rowsLeft_ >= rows + rest ? take(rows) : 0;
}

bool Layout::hasGraph() const {
  const VELGraphMultiple* graph = content_.graph;
  return graph != nullptr && graph->history() != nullptr && graph->numberOfGraphs() > 0 &&
         width_ >= kLeastBar;
}

/// A gauge for each processor is worth the `extraRows` that come after; where that cannot be had
/// anyway, they stay.
void Layout::planProcessors(int extraRows) {
  const int processors = static_cast<int>(readings_.processors.size());
  const int spare = rowsLeft_ - extraRows;
  const auto unfolded = ProcessorGrid::rowsUnfolded(readings_.numbers, width_);
  const int rows = unfolded && *unfolded <= rowsLeft_
                       ? std::max(*unfolded, std::min(processors, spare))
                       : std::max(spare, (rowsLeft_ + 1) / 2);
  grid_ = ProcessorGrid::plan(readings_.numbers, width_, rows);
  take(grid_ ? grid_->rows : 0);
}

void Layout::setLabelWidth(bool withGraph) {
  for (const auto* label : {&labels_.user, &labels_.system, &labels_.nice, &labels_.idle}) {
    labelWidth_ = std::max(labelWidth_, widthOf(*label));
  }
  if (withGraph) {
    labelWidth_ = std::max(labelWidth_, widthOf(labels_.graph));
  }
  if (grid_ && grid_->columns == 1) {
    labelWidth_ = std::max(labelWidth_, widthOf(labels_.cpu) + 1 + grid_->labelWidth);
  }
}

void Layout::add(Line line) {
  clip(line, width_);
  if (margin_ > 0 && !line.empty()) {
    line.insert(line.begin(), Span{std::wstring(static_cast<std::size_t>(margin_), L' ')});
  }
  lines_.push_back(std::move(line));
}

void Layout::addAll(std::vector<Line> lines) {
  std::for_each(lines.begin(), lines.end(), [this](Line& line) { add(std::move(line)); });
}

void Layout::addBlank(int rows) {
  lines_.resize(lines_.size() + static_cast<std::size_t>(rows));
}

void Layout::addGauges(int count, bool withNice) {
  if (count > 0) {
    add(gaugeLine({labels_.user, readings_.user}));
  }
  if (count > 1) {
    add(gaugeLine({labels_.system, readings_.system}));
  }
  if (withNice) {
    add(gaugeLine({labels_.nice, readings_.nice}));
  }
  if (count > 2) {
    add(gaugeLine({labels_.idle, readings_.idle, Tone::gaugeIdle}));
  }
}

Line Layout::alertLine() const {
  Line line{{content_.alert, Tone::busy}};
  const Line hint{{std::wstring(kGap, L' ') + L"x"}, {L" " + labels_.dismiss, Tone::faint}};
  if (hasKeyHints() && widthOf(line) + widthOf(hint) <= width_) {
    line.insert(line.end(), hint.begin(), hint.end());
  }
  return line;
}

/// The name stands among the labels and the text among the percentages. Where there is no room for
/// all, the text alone is shown, and where there is none for that either, the gauges. The badge is
/// left out first.
Line Layout::itemLine() const {
  const std::wstring name = decode(item_.name);
  const std::wstring text = decode(item_.text);
  Line line;
  if (hasLabels()) {
    line.push_back({paddedRight(clipped(name, labelWidth_), labelWidth_ + kGap), Tone::strong});
    line.push_back({paddedLeft(text, kLongPercentage)});
    if (!text.empty()) {
      appendNice(line);
    }
    appendItemPicture(line, width_ - widthOf(line) - kGap);
  } else if (item_.gauges.empty() || (width_ >= kShortPercentage && !text.empty())) {
    line.push_back({paddedLeft(text.empty() ? name : text, std::min(width_, kLongPercentage))});
  } else {
    appendItemGauges(line, width_);
  }
  return line;
}

/// The item's percentage is without what is niced, unlike the processors' below it. The gauges are
/// worth more; they do not move where another percentage has one digit more.
void Layout::appendNice(Line& line) const {
  const auto textOf = [this](long percent) {
    return L" " + decode(Locale::formatInteger(labels_.niceFormat, percent));
  };
  const long percent = std::lrint(readings_.nice.value_or(0.0F) * 100.0F);
  const std::wstring text = paddedRight(textOf(percent), widthOf(textOf(10)));
  const int gauges = std::max(kLeastBar, static_cast<int>(item_.gauges.size()));
  const int rest = width_ - widthOf(line) - kGap - gauges - widthOf(badgeText());
  if (percent > 0 && widthOf(text) <= rest) {
    line.push_back({text, Tone::faint});
  }
}

std::wstring Layout::badgeText() const {
  return item_.badge.empty() ? L"" : L" [" + decode(item_.badge) + L"]";
}

/// The gauges and the badge, at most so wide.
void Layout::appendItemPicture(Line& line, int columns) const {
  if (columns < kLeastBar) {
    return;
  }
  line.push_back({std::wstring(kGap, L' ')});
  const std::wstring badge = badgeText();
  const int columnsLeft = columns - widthOf(badge);
  appendItemGauges(line, columnsLeft >= kLeastBar ? columnsLeft : columns);
  if (columnsLeft >= kLeastBar) {
    line.push_back({badge});
  }
}

void Layout::appendItemGauges(Line& line, int columns) const {
  const auto& gauges = item_.gauges;
  if (gauges.size() == 1) {
    appendBar(line, gauges[0].share, columns, gauges[0].busy ? Tone::busy : Tone::gauge);
  } else {
    Line row = gaugeRow(gauges, columns, style_.blocks);
    std::move(row.begin(), row.end(), std::back_inserter(line));
  }
}

Line Layout::gaugeLine(const Gauge& gauge) const {
  const bool busy = gauge.barTone != Tone::gaugeIdle && isBusy(gauge.share);
  const Tone barTone = busy ? Tone::busy : gauge.barTone;
  const Tone numberTone = busy ? Tone::busy : Tone::normal;
  const std::wstring exact = paddedLeft(percentage(gauge.share, 1), kLongPercentage);

  Line line;
  if (width_ < kShortPercentage) {
    appendBar(line, gauge.share, width_, barTone);
  } else if (width_ < kLongPercentage) {
    line.push_back({paddedLeft(percentage(gauge.share, 0), kShortPercentage), numberTone});
  } else if (!hasLabels()) {
    line.push_back({exact, numberTone});
  } else {
    line.push_back({paddedRight(gauge.label, labelWidth_ + kGap)});
    line.push_back({exact, numberTone});
    const int barWidth = width_ - widthOf(line) - kGap;
    if (barWidth >= kLeastBar) {
      line.push_back({std::wstring(kGap, L' ')});
      appendBar(line, gauge.share, barWidth, barTone);
    }
  }
  return line;
}

void Layout::appendBar(Line& line, Readings::Share share, int columns, Tone tone) const {
  Bar bar(share.value_or(0.0F), columns, style_.blocks);
  line.push_back({std::move(bar.filled), tone});
  line.push_back({std::move(bar.track), Tone::faint});
}

void Layout::addProcessors() {
  if (!grid_) {
    return;
  }
  for (int row = 0; row < grid_->rows; ++row) {
    if (grid_->columns == 1) {
      const std::wstring number = paddedLeft(grid_->label(row), grid_->labelWidth);
      add(gaugeLine({labels_.cpu + L" " + number, meanOf(row)}));
      continue;
    }
    Line line;
    for (int gauge = row; gauge < grid_->gauges; gauge += grid_->rows) {
      appendCell(line, gauge);
    }
    add(std::move(line));
  }
}

/// The scale stands where the percentages do, unless the graphs are several.
void Layout::addGraph(int rows) {
  if (rows == 0) {
    return;
  }
  addBlank(1);
  const int barColumn = labelWidth_ + kGap + kLongPercentage + kGap;
  const bool beside = hasLabels() && width_ >= barColumn + kLeastBar;
  const bool withScale = content_.graph->numberOfGraphs() == 1;
  auto graph =
      historyGraph(*content_.graph, beside ? width_ - barColumn : width_, rows, style_.blocks);
  for (std::size_t row = 0; row < graph.size(); ++row) {
    Line line;
    if (beside) {
      const std::wstring label = row == 0 ? labels_.graph : L"";
      const bool isEnd = row == 0 || row == graph.size() - 1;
      const float top = content_.graph->maxValue() / 100.0F;
      const std::wstring scale = withScale && isEnd ? percentage(row == 0 ? top : 0.0F, 0) : L"";
      line.push_back({paddedRight(label, labelWidth_ + kGap)});
      line.push_back({paddedLeft(scale, kLongPercentage) + std::wstring(kGap, L' '), Tone::faint});
    }
    std::move(graph[row].begin(), graph[row].end(), std::back_inserter(line));
    add(std::move(line));
  }
}

void Layout::appendCell(Line& line, int gauge) const {
  if (!line.empty()) {
    line.push_back({std::wstring(kGap, L' ')});
  }
  const float share = meanOf(gauge);
  const bool busy = isBusy(share);
  line.push_back({paddedLeft(grid_->label(gauge), grid_->labelWidth), Tone::faint});
  line.push_back({L" " + paddedLeft(percentage(share, 0), kShortPercentage) + L" ",
                  busy ? Tone::busy : Tone::normal});
  appendBar(line, share, grid_->cellWidth - grid_->labelWidth - kShortPercentage - 2,
            busy ? Tone::busy : Tone::gauge);
}

float Layout::meanOf(int gauge) const {
  const auto begin = readings_.processors.begin();
  const int first = grid_->firstProcessor(gauge);
  const int end = grid_->endProcessor(gauge);
  return std::accumulate(begin + first, begin + end, 0.0F) / static_cast<float>(end - first);
}

std::vector<Line> Layout::statusLines() const {
  const auto& upTime = readings_.upTime;
  std::vector<Line> items{
      statusItem(labels_.load, loadText()),
      statusItem(labels_.tasks, number(readings_.tasks, 0)),
      statusItem(labels_.threads, number(readings_.threads, 0)),
      statusItem(labels_.upTime,
                 decode(uptimeText(upTime, labels_.monthFormat, labels_.dayFormat))),
  };
  if (const auto& rule = content_.alertRule) {
    items.push_back(statusItem(labels_.alert, std::to_wstring(rule->threshold) + L" % " +
                                                  std::to_wstring(rule->minutes) + L" min"));
  }
  if (content_.hasGPUAlert) {
    items.push_back({{labels_.gpuAlert, Tone::normal}});
  }
  std::vector<Line> lines;
  for (Line& item : items) {
    const int itemWidth = widthOf(item);
    if (itemWidth > width_) {
      continue;
    }
    if (lines.empty() || widthOf(lines.back()) + kItemGap + itemWidth > width_) {
      lines.push_back(std::move(item));
    } else {
      lines.back().push_back({std::wstring(kItemGap, L' ')});
      std::move(item.begin(), item.end(), std::back_inserter(lines.back()));
    }
  }
  return lines;
}

/// Of those in the middle as many as fit: the last one tells of the others.
void Layout::addKeyHints() {
  std::vector<Line> hints;
  int width = 0;
  for (const KeyDescription& key : style_.keys) {
    if (key.word.empty()) {
      continue;
    }
    hints.push_back({{key.key, Tone::normal}, {L" " + key.word, Tone::faint}});
    width += (hints.size() > 1 ? kGap : 0) + widthOf(hints.back());
  }
  while (width > width_ && hints.size() > 1) {
    const auto dropped = hints.end() - (hints.size() > 2 ? 2 : 1);
    width -= kGap + widthOf(*dropped);
    hints.erase(dropped);
  }
  Line line;
  for (Line& hint : hints) {
    if (!line.empty()) {
      line.push_back({std::wstring(kGap, L' ')});
    }
    std::move(hint.begin(), hint.end(), std::back_inserter(line));
  }
  add(std::move(line));
}

std::wstring Layout::number(std::optional<float> value, int decimals) const {
  return value ? decode(locale_.number(static_cast<double>(*value), decimals)) : kNoValue;
}

std::wstring Layout::percentage(Readings::Share share, int decimals) const {
  return share ? decode(locale_.number(static_cast<double>(*share) * 100.0, decimals)) + L" %"
               : std::wstring(kNoValue) + L"  ";
}

std::wstring Layout::loadText() const {
  std::wstring text;
  for (const auto& average : readings_.load) {
    text += (text.empty() ? L"" : L" ") + number(average, 2);
  }
  return text;
}

}  // namespace

Page layOut(const Content& content, const Labels& labels, const Locale& locale, LayoutSize size,
            const LayoutStyle& style) {
  return Layout(content, labels, locale, size, style).page();
}

}  // namespace vel
