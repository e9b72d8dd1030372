#include "host/terminal/ProcessLines.h"

#include <algorithm>
#include <string>

#include "host/terminal/Text.h"

namespace vel {
namespace {

constexpr int kNameWidth = 16;  ///< the kernel's names are no longer (man 5 proc, comm)
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

}  // namespace

std::vector<Line> processLines(const ProcessList& processes, const Labels& labels, int columns) {
  int shareWidth = kShareWidth;
  for (const ProcessEntry& process : processes.entries) {
    shareWidth = std::max(shareWidth, widthOf(decode(process.avgCpuTime)));
  }
  const int withoutName = kGap + kPidWidth + kGap + shareWidth;
  const bool withPid = columns >= kLeastNameWidth + withoutName;
  const int nameWidth =
      std::clamp(columns - (withPid ? withoutName : kGap + shareWidth), 0, kNameWidth);

  std::vector<Line> lines{{{headingOf(processes.ranking, labels), Tone::faint}}};
  for (const ProcessEntry& process : processes.entries) {
    const std::wstring name = decode(process.name);
    Line line{{paddedRight(clipped(name, nameWidth), nameWidth)}};
    if (withPid) {
      line.push_back({paddedLeft(decode(process.pid), kGap + kPidWidth), Tone::faint});
    }
    line.push_back({paddedLeft(decode(process.avgCpuTime), kGap + shareWidth)});
    lines.push_back(std::move(line));
  }
  return lines;
}

}  // namespace vel
