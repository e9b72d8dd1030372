#include "host/terminal/HelpPage.h"

#include <algorithm>
#include <cstddef>
#include <cwchar>
#include <limits>

#include "host/terminal/Text.h"

namespace vel {
namespace {

constexpr int kUnlimited = std::numeric_limits<int>::max();

void addKey(std::vector<Line>& lines, const KeyDescription& key, int keyWidth, int columns) {
  std::wstring before = L" " + paddedRight(key.key, keyWidth) + L"  ";
  std::wstring_view rest = key.explanation;
  do {
    const int indent = widthOf(before);
    lines.push_back(
        {{before, Tone::normal}, {std::wstring(takeLine(rest, columns - indent)), Tone::faint}});
    before.assign(static_cast<std::size_t>(indent), L' ');
  } while (!rest.empty());
}

std::vector<Line> pageOf(const std::vector<KeyDescription>& keys, const Labels& labels,
                         int columns) {
  std::vector<Line> lines{{{L" " + labels.keys, Tone::strong}}, {}};
  int keyWidth = 0;
  for (const KeyDescription& key : keys) {
    keyWidth = std::max(keyWidth, widthOf(key.key));
  }
  for (const KeyDescription& key : keys) {
    addKey(lines, key, keyWidth, columns);
  }
  lines.emplace_back();
  lines.push_back({{L" " + labels.anyKey, Tone::faint}});
  return lines;
}

void removeBlank(std::vector<Line>& lines) {
  std::erase_if(lines, [](const Line& line) { return line.empty(); });
}

}  // namespace

std::vector<KeyDescription> describeKeys(const ModuleControls& controls, const Labels& labels) {
  std::vector<KeyDescription> keys{{L"q", labels.quit, labels.quitExplained}};
  if (controls.hasRanking()) {
    keys.push_back({L"t", labels.ranking, labels.rankingExplained});
    keys.push_back({wcwidth(L'↑') == 1 ? L"↑ ↓" : L"^ v", L"", labels.chooseExplained});
    keys.push_back({L"k", labels.end, labels.endExplained});
  }
  if (controls.hasCores()) {
    keys.push_back({L"c", labels.cores, labels.coresExplained});
  }
  if (controls.hasGraph()) {
    keys.push_back({L"g", labels.graphKey, labels.graphExplained});
  }
  if (controls.hasGPU()) {
    keys.push_back({L"v", labels.gpuKey, labels.gpuExplained});
  }
  if (controls.hasGPUAlert()) {
    keys.push_back({L"n", L"", labels.gpuAlertExplained});
  }
  if (controls.hasAlert()) {
    keys.push_back({L"a", labels.alertKey, labels.alertExplained});
    keys.push_back({L"< >", L"", labels.thresholdExplained});
    keys.push_back({L"[ ]", L"", labels.durationExplained});
    keys.push_back({L"x", L"", labels.dismissExplained});
  }
  keys.push_back({L"?", labels.help, labels.helpExplained});
  return keys;
}

std::vector<Line> helpPage(const std::vector<KeyDescription>& keys, const Labels& labels,
                           int columns, int rows) {
  const auto most = static_cast<std::size_t>(std::max(0, rows));
  std::vector<Line> lines = pageOf(keys, labels, columns);
  if (lines.size() > most) {
    removeBlank(lines);
  }
  if (lines.size() > most) {
    lines = pageOf(keys, labels, kUnlimited);
    removeBlank(lines);
    lines.resize(std::min(lines.size(), most));
  }
  std::for_each(lines.begin(), lines.end(), [columns](Line& line) { clip(line, columns); });
  return lines;
}

}  // namespace vel
