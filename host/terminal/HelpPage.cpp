#include "host/terminal/HelpPage.h"

#include <algorithm>
#include <cstddef>

#include "host/terminal/Text.h"

namespace vel {

std::vector<KeyDescription> describeKeys(const ModuleControls& controls, const Labels& labels) {
  std::vector<KeyDescription> keys{{L"q", labels.quit, labels.quitExplained}};
  if (controls.hasRanking()) {
    keys.push_back({L"t", labels.ranking, labels.rankingExplained});
  }
  if (controls.hasCores()) {
    keys.push_back({L"c", labels.cores, labels.coresExplained});
  }
  if (controls.hasGraph()) {
    keys.push_back({L"g", labels.graphKey, labels.graphExplained});
  }
  keys.push_back({L"?", labels.help, labels.helpExplained});
  return keys;
}

std::vector<Line> helpPage(const std::vector<KeyDescription>& keys, const Labels& labels,
                           int columns, int rows) {
  std::vector<Line> lines{{{L" " + labels.keys, Tone::strong}}, {}};
  for (const KeyDescription& key : keys) {
    lines.push_back({{L" " + key.key, Tone::normal}, {L"  " + key.explanation, Tone::faint}});
  }
  lines.emplace_back();
  lines.push_back({{L" " + labels.anyKey, Tone::faint}});
  lines.resize(std::min(lines.size(), static_cast<std::size_t>(std::max(0, rows))));
  std::for_each(lines.begin(), lines.end(), [columns](Line& line) { clip(line, columns); });
  return lines;
}

}  // namespace vel
