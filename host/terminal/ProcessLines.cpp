#include "host/terminal/ProcessLines.h"

#include <algorithm>
#include <cwchar>
#include <string>

#include "host/terminal/Text.h"

namespace vel {
namespace {

constexpr int kNameWidth = 16;  ///< enough for most names, so that the columns seldom move
constexpr int kLeastNameWidth = 8;
constexpr int kPidWidth = 7;  ///< of the highest that there is, 4194304
constexpr int kShareWidth = 7;

const std::wstring& headingOf(ProcessList::Ranking ranking, const Labels& labels) {
  switch (ranking) {
    case ProcessList::Ranking::averageSinceStart:
      return labels.topProcessesAverage;
    case ProcessList::Ranking::now:
      return labels.topProcessesNow;
    case ProcessList::Ranking::unknown:
      break;
  }
  return labels.topProcesses;
}

/// As "×14", nothing for one.
std::wstring countOf(const ProcessEntry& process) {
  const wchar_t* const times = wcwidth(L'×') == 1 ? L"×" : L"x";
  return process.processes > 1 ? times + std::to_wstring(process.processes) : std::wstring();
}

/// In columns, 0 for a column that is left out.
struct Widths {
  int name = kNameWidth;
  int count = 0;
  int pid = kGap + kPidWidth;
  int share = kGap + kShareWidth;
};

Widths widthsOf(const ProcessList& processes, int columns) {
  Widths widths;
  for (const ProcessEntry& process : processes.entries) {
    widths.name = std::max(widths.name, widthOf(decode(process.name)));
    const int count = widthOf(countOf(process));
    widths.count = std::max(widths.count, count > 0 ? kGap + count : 0);
    widths.share = std::max(widths.share, kGap + widthOf(decode(process.avgCpuTime)));
  }
  if (columns < kNameWidth + widths.count + widths.pid + widths.share) {
    widths.count = 0;
  }
  if (columns < kLeastNameWidth + widths.pid + widths.share) {
    widths.pid = 0;
  }
  widths.name = std::clamp(columns - widths.count - widths.pid - widths.share, 0, widths.name);
  return widths;
}

}  // namespace

std::vector<Line> processLines(const ProcessList& processes, const Labels& labels, int columns) {
  const Widths widths = widthsOf(processes, columns);
  std::vector<Line> lines{{{headingOf(processes.ranking, labels), Tone::faint}}};
  for (const ProcessEntry& process : processes.entries) {
    Line line{{paddedRight(shortened(decode(process.name), widths.name), widths.name)}};
    if (widths.count > 0) {
      line.push_back({paddedLeft(countOf(process), widths.count), Tone::faint});
    }
    if (widths.pid > 0) {
      line.push_back({paddedLeft(decode(process.pid), widths.pid), Tone::faint});
    }
    line.push_back({paddedLeft(decode(process.avgCpuTime), widths.share)});
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace vel
