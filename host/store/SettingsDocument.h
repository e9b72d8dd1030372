// The text of a settings file: what it says, and changes to it that leave the rest as it is.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vel {

/// What makes a file no settings file. The message is one line and names neither file nor line.
class SettingsFault : public std::runtime_error {
 public:
  /// `faultyLine` is counted from 1; 0 if it is the file as a whole.
  SettingsFault(std::size_t faultyLine, const std::string& message)
      : std::runtime_error(message), line(faultyLine) {}

  std::size_t line;
};

/// A line `key = value`; the views last until the document changes.
struct SettingsEntry {
  std::string_view section;  ///< empty before the first section
  std::string_view key;
  std::string_view value;  ///< any text, may be empty
  std::size_t line = 0;    ///< counted from 1
};

/// Lines are `[section]`, `key = value`, comments (from "#" or ";" at the beginning) and blank
/// ones. They end in LF or CR LF. Blanks around section, key and value do not count; case does.
/// Sections of the same name are one, of the same keys in a section the last holds. Bytes above
/// ASCII are kept as they are.
///
/// It keeps the text itself rather than a tree because people edit and comment the file: a change
/// touches one value or adds lines. The libraries at hand write a file anew: SimpleIni 4.19 drops
/// comments at the end of the file and lines it does not know, moves other comments, and undoes CR
/// LF, blank lines and spacing; GLib's GKeyFile (2.74) refuses ";" comments, joins sections, and
/// undoes CR LF and spacing.
class SettingsDocument {
 public:
  static constexpr std::size_t kMaximumSize = std::size_t{1} << 20U;

  SettingsDocument() = default;

  /// Throws SettingsFault.
  explicit SettingsDocument(std::string text);

  [[nodiscard]] const std::string& text() const { return text_; }

  /// In the order of the lines.
  [[nodiscard]] std::vector<SettingsEntry> entries() const;

  /// Whether a line can hold these names such that they read the same again.
  static bool canHold(std::string_view section, std::string_view key);

  /// Changes the entry that holds, or adds one after the last line of the section that is a header
  /// or an entry, or adds the section at the end. The names must be such that `canHold`.
  void set(std::string_view section, std::string_view key, std::int64_t value);

 private:
  void addLines(const std::vector<std::string>& lines, std::size_t position,
                const std::string& lineBreak);

  std::string text_;
};

}  // namespace vel
