#include "host/terminal/Layout.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <iterator>
#include <numeric>
#include <optional>
#include <string>
#include <utility>

#include "host/terminal/Bar.h"
#include "host/terminal/GaugeRow.h"
#include "host/terminal/ProcessorGrid.h"
#include "host/terminal/Text.h"
#include "host/terminal/Uptime.h"

namespace vel {
namespace {

/// As in the menu bar's item: above this share a gauge is red.
constexpr double kBusy = 0.7;

constexpr int kLongPercentage = 7;   ///< "100.0 %"
constexpr int kShortPercentage = 5;  ///< "100 %"
constexpr int kGap = 2;              ///< between the columns of a line
constexpr int kItemGap = 4;          ///< between the figures of a status line
constexpr int kLeastBar = 4;
constexpr int kLeastWidthWithMargin = 40;

constexpr const wchar_t* kUnknown = L"-";

int widthOfLine(const Line& line) {
  return std::accumulate(line.begin(), line.end(), 0,
                         [](int width, const Span& span) { return width + widthOf(span.text); });
}

Line statusItem(const std::wstring& label, const std::wstring& value) {
  return {{label + L" ", Tone::faint}, {value, Tone::normal}};
}

class Layout {
 public:
  Layout(const Item& item, const Readings& readings, const Labels& labels, const Locale& locale,
         LayoutSize size, LayoutStyle style)
      : item_(item),
        readings_(readings),
        labels_(labels),
        locale_(locale),
        style_(style),
        margin_(size.columns >= kLeastWidthWithMargin ? 1 : 0),
        width_(size.columns - 2 * margin_),
        rowsLeft_(size.rows) {}

  std::vector<Line> lines();

 private:
  struct Gauge {
    const std::wstring& label;
    Readings::Share share;
    Tone barTone = Tone::gauge;
  };

  /// Takes rows for a part of the display, as many as are left.
  int take(int rows);
  void planProcessors(int extraRows);
  void setLabelWidth();

  void add(Line line);
  void addBlank(int rows);
  void addGauges(int count, bool withNice);
  void addProcessors();
  void addKeyHints();

  [[nodiscard]] Line itemLine() const;
  void appendItemGauges(Line& line, int columns) const;
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
  const Labels& labels_;
  const Locale& locale_;
  const LayoutStyle style_;
  const int margin_;
  const int width_;
  int rowsLeft_;
  int labelWidth_ = 0;
  std::optional<ProcessorGrid> grid_;
  std::vector<Line> lines_;
};

bool isBusy(Readings::Share share) {
  return share && static_cast<double>(*share) > kBusy;
}

int Layout::take(int rows) {
  const int taken = std::clamp(rows, 0, rowsLeft_);
  rowsLeft_ -= taken;
  return taken;
}

std::vector<Line> Layout::lines() {
  std::vector<Line> status = statusLines();
  // In the order of importance.
  const bool item = !item_.isEmpty() && take(1) == 1;
  const int gauges = take(3);
  status.resize(static_cast<std::size_t>(take(static_cast<int>(status.size()))));
  planProcessors(style_.keyHints ? 5 : 3);
  const bool nice = take(1) == 1;
  const bool keyHints = style_.keyHints && take(1) == 1;
  const int gapBeforeProcessors = grid_ ? take(1) : 0;
  const int gapBeforeStatus = status.empty() ? 0 : take(1);

  setLabelWidth();
  if (item) {
    add(itemLine());
  }
  addGauges(gauges, nice);
  addBlank(gapBeforeProcessors);
  addProcessors();
  addBlank(gapBeforeStatus);
  std::for_each(status.begin(), status.end(), [this](Line& line) { add(std::move(line)); });
  if (keyHints) {
    addBlank(rowsLeft_);
    addKeyHints();
  }
  return std::move(lines_);
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

void Layout::setLabelWidth() {
  for (const auto* label : {&labels_.user, &labels_.system, &labels_.nice, &labels_.idle}) {
    labelWidth_ = std::max(labelWidth_, widthOf(*label));
  }
  if (grid_ && grid_->columns == 1) {
    labelWidth_ = std::max(labelWidth_, widthOf(labels_.cpu) + 1 + grid_->labelWidth);
  }
}

void Layout::add(Line line) {
  int left = width_;
  for (Span& span : line) {
    span.text = clipped(span.text, left);
    left -= widthOf(span.text);
  }
  if (margin_ > 0 && !line.empty()) {
    line.insert(line.begin(), Span{std::wstring(static_cast<std::size_t>(margin_), L' ')});
  }
  lines_.push_back(std::move(line));
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

/// The name stands among the labels and the text among the percentages. Where there is no room for
/// all, the text alone is shown, and where there is none for that either, the gauges.
Line Layout::itemLine() const {
  const std::wstring name = decode(item_.name);
  const std::wstring text = decode(item_.text);
  Line line;
  if (width_ >= labelWidth_ + kGap + kLongPercentage) {
    line.push_back({paddedRight(clipped(name, labelWidth_), labelWidth_ + kGap), Tone::strong});
    line.push_back({paddedLeft(text, kLongPercentage)});
    const int columns = width_ - widthOfLine(line) - kGap;
    if (columns >= kLeastBar) {
      line.push_back({std::wstring(kGap, L' ')});
      appendItemGauges(line, columns);
    }
  } else if (item_.gauges.empty() || (width_ >= kShortPercentage && !text.empty())) {
    line.push_back({paddedLeft(text.empty() ? name : text, std::min(width_, kLongPercentage))});
  } else {
    appendItemGauges(line, width_);
  }
  return line;
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
  } else if (width_ < labelWidth_ + kGap + kLongPercentage) {
    line.push_back({exact, numberTone});
  } else {
    line.push_back({paddedRight(gauge.label, labelWidth_ + kGap)});
    line.push_back({exact, numberTone});
    const int barWidth = width_ - widthOfLine(line) - kGap;
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

void Layout::appendCell(Line& line, int gauge) const {
  if (!line.empty()) {
    line.push_back({std::wstring(ProcessorGrid::kGap, L' ')});
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
  std::array<Line, 4> items{
      statusItem(labels_.load, loadText()),
      statusItem(labels_.tasks, number(readings_.tasks, 0)),
      statusItem(labels_.threads, number(readings_.threads, 0)),
      statusItem(labels_.upTime,
                 decode(uptimeText(upTime, labels_.monthFormat, labels_.dayFormat))),
  };
  std::vector<Line> lines;
  for (Line& item : items) {
    const int itemWidth = widthOfLine(item);
    if (itemWidth > width_) {
      continue;
    }
    if (lines.empty() || widthOfLine(lines.back()) + kItemGap + itemWidth > width_) {
      lines.push_back(std::move(item));
    } else {
      lines.back().push_back({std::wstring(kItemGap, L' ')});
      std::move(item.begin(), item.end(), std::back_inserter(lines.back()));
    }
  }
  return lines;
}

void Layout::addKeyHints() {
  add({{L"q", Tone::normal}, {L" " + labels_.quit, Tone::faint}});
}

std::wstring Layout::number(std::optional<float> value, int decimals) const {
  return value ? decode(locale_.number(static_cast<double>(*value), decimals)) : kUnknown;
}

std::wstring Layout::percentage(Readings::Share share, int decimals) const {
  return share ? decode(locale_.number(static_cast<double>(*share) * 100.0, decimals)) + L" %"
               : std::wstring(kUnknown) + L"  ";
}

std::wstring Layout::loadText() const {
  std::wstring text;
  for (const auto& average : readings_.load) {
    text += (text.empty() ? L"" : L" ") + number(average, 2);
  }
  return text;
}

}  // namespace

std::vector<Line> layOut(const Item& item, const Readings& readings, const Labels& labels,
                         const Locale& locale, LayoutSize size, LayoutStyle style) {
  return Layout(item, readings, labels, locale, size, style).lines();
}

}  // namespace vel
