// Any bytes as a settings file: what is accepted stays as it is, and a change changes one setting.
#include <algorithm>
#include <map>
#include <utility>

#include "fuzz/Fuzzing.h"
#include "host/store/SettingsDocument.h"

namespace {

using Settings = std::map<std::pair<std::string, std::string>, std::string>;

Settings settingsOf(const vel::SettingsDocument& document) {
  Settings settings;
  for (const vel::SettingsEntry& entry : document.entries()) {
    settings[{std::string(entry.section), std::string(entry.key)}] = entry.value;
  }
  return settings;
}

void checkChange(const vel::SettingsDocument& document, const std::string& section,
                 const std::string& key) {
  if (!vel::SettingsDocument::canHold(section, key)) {
    return;
  }
  vel::SettingsDocument changed = document;
  changed.set(section, key, INT64_MIN);
  Settings expected = settingsOf(document);
  expected[{section, key}] = std::to_string(INT64_MIN);
  vel::fuzz::require(settingsOf(vel::SettingsDocument(changed.text())) == expected);
  vel::fuzz::require(document.text().ends_with('\n') || document.text().empty() ||
                     !changed.text().ends_with('\n'));
  // Values apart, a second change finds all in place.
  vel::SettingsDocument again = changed;
  again.set(section, key, 0);
  again.set(section, key, INT64_MIN);
  vel::fuzz::require(again.text() == changed.text());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text = vel::fuzz::textOf(data, size);
  try {
    const vel::SettingsDocument document(text);
    vel::fuzz::require(document.text() == text);
    // Names from the text: those it has, and its halves whatever they are.
    const auto entries = document.entries();
    for (std::size_t i = 0; i < std::min<std::size_t>(entries.size(), 4); ++i) {
      vel::fuzz::require(vel::SettingsDocument::canHold(entries[i].section, entries[i].key));
      checkChange(document, std::string(entries[i].section), std::string(entries[i].key));
      checkChange(document, std::string(entries[i].section), std::string(entries[i].value));
    }
    checkChange(document, text.substr(0, size / 2), text.substr(size / 2));
    checkChange(document, "org.velbar.cpu", "gaugeType");
  } catch (const vel::SettingsFault& fault) {
    const auto breaks = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    vel::fuzz::require(fault.line >= 1 && fault.line <= breaks + 1);
  }
  return 0;
}
