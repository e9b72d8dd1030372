// Reads a settings file line by line, and finds the place of a change in it.
#include "host/store/SettingsDocument.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace vel {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";
/// Some editors begin a file in UTF-8 with it.
constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

/// What is empty then still points at its place: after the blanks.
std::string_view trimmed(std::string_view text) {
  text.remove_prefix(std::min(text.find_first_not_of(kBlanks), text.size()));
  return text.substr(0, text.find_last_not_of(kBlanks) + 1);
}

enum class Kind { other, header, entry };

struct Line {
  Kind kind = Kind::other;  ///< comments and blank lines are "other"
  std::string_view whole;   ///< with its ending
  SettingsEntry entry;      ///< of a header only `section`
};

std::string_view endingOf(std::string_view line) {
  const std::size_t length = line.ends_with("\r\n") ? 2 : line.ends_with('\n') ? 1 : 0;
  return line.substr(line.size() - length);
}

/// Goes through the lines of a text.
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}

  /// Nothing at the end. Throws SettingsFault.
  std::optional<Line> next();

 private:
  void classify(std::string_view content, Line& line);

  std::string_view rest_;
  std::string_view section_;
  std::size_t number_ = 0;
};

std::optional<Line> Lines::next() {
  if (rest_.empty()) {
    return std::nullopt;
  }
  Line line;
  line.whole = rest_.substr(0, std::min(rest_.find('\n'), rest_.size() - 1) + 1);
  rest_.remove_prefix(line.whole.size());
  std::string_view content = line.whole;
  if (++number_ == 1 && content.starts_with(kByteOrderMark)) {
    content.remove_prefix(kByteOrderMark.size());
  }
  content.remove_suffix(endingOf(content).size());
  classify(content, line);
  return line;
}

void Lines::classify(std::string_view content, Line& line) {
  const std::string_view inner = trimmed(content);
  if (inner.find('\0') != std::string_view::npos) {
    throw SettingsFault(number_, "a NUL byte, expected text");
  }
  if (inner.empty() || inner[0] == '#' || inner[0] == ';') {
    return;
  }
  const std::size_t equals = inner.find('=');
  if (inner.size() >= 2 && inner[0] == '[' && inner.back() == ']') {
    line.kind = Kind::header;
    section_ = trimmed(inner.substr(1, inner.size() - 2));
  } else if (inner[0] != '[' && equals != 0 && equals != std::string_view::npos) {
    line.kind = Kind::entry;
    // From `content`: where a value is missing, the blanks before its place are not.
    const std::size_t value = content.find('=') + 1;
    line.entry.key = trimmed(inner.substr(0, equals));
    line.entry.value = trimmed(content.substr(value));
  } else {
    throw SettingsFault(number_, "expected [section], key = value or a comment");
  }
  line.entry.section = section_;
  line.entry.line = number_;
}

bool isName(std::string_view text) {
  using std::string_view_literals::operator""sv;
  return trimmed(text) == text && text.find_first_of("\n\0"sv) == std::string_view::npos;
}

/// Where a change can go. The views are of the text, and empty where there is no such line.
struct Places {
  const char* value = nullptr;  ///< of the entry that holds
  std::size_t valueSize = 0;
  std::string_view sectionsLast;  ///< line of the section, header or entry
  std::string_view last;          ///< line of all
  std::string_view lineBreak = "\n";
};

Places placesFor(std::string_view text, std::string_view section, std::string_view key) {
  Places places;
  Lines lines(text);
  while (const auto line = lines.next()) {
    places.last = line->whole;
    if (const auto ending = endingOf(line->whole); !ending.empty()) {
      places.lineBreak = ending;
    }
    if (line->kind == Kind::other || line->entry.section != section) {
      continue;
    }
    places.sectionsLast = line->whole;
    if (line->kind == Kind::entry && line->entry.key == key) {
      places.value = line->entry.value.data();
      places.valueSize = line->entry.value.size();
    }
  }
  return places;
}

}  // namespace

SettingsDocument::SettingsDocument(std::string text) : text_(std::move(text)) {
  Lines lines(text_);
  while (lines.next()) {
  }
}

std::vector<SettingsEntry> SettingsDocument::entries() const {
  std::vector<SettingsEntry> found;
  Lines lines(text_);
  while (const auto line = lines.next()) {
    if (line->kind == Kind::entry) {
      found.push_back(line->entry);
    }
  }
  return found;
}

bool SettingsDocument::canHold(std::string_view section, std::string_view key) {
  return isName(section) && isName(key) && !key.empty() &&
         std::string_view("#;[").find(key[0]) == std::string_view::npos &&
         key.find('=') == std::string_view::npos;
}

void SettingsDocument::set(std::string_view section, std::string_view key, std::int64_t value) {
  const Places places = placesFor(text_, section, key);
  const auto positionOf = [this](const char* place) {
    return static_cast<std::size_t>(place - text_.data());
  };
  const std::string number = std::to_string(value);
  if (places.value != nullptr) {
    text_.replace(positionOf(places.value), places.valueSize, number);
    return;
  }
  const std::string entry = std::string(key) + " = " + number;
  if (!places.sectionsLast.empty()) {
    addLines({entry}, positionOf(places.sectionsLast.data()) + places.sectionsLast.size(),
             std::string(places.lineBreak));
    return;
  }
  std::vector<std::string> lines{"[" + std::string(section) + "]", entry};
  if (!trimmed(places.last).empty()) {
    lines.insert(lines.begin(), "");
  }
  addLines(lines, text_.size(), std::string(places.lineBreak));
}

void SettingsDocument::addLines(const std::vector<std::string>& lines, std::size_t position,
                                const std::string& lineBreak) {
  // A file without a line break at its end stays one.
  const bool endsOpen = position > 0 && text_[position - 1] != '\n';
  std::string added;
  for (const std::string& line : lines) {
    added += endsOpen ? lineBreak + line : line + lineBreak;
  }
  text_.insert(position, added);
}

}  // namespace vel
