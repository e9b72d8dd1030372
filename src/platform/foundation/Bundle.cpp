// Finds and reads a bundle's files.
#include "platform/foundation/Bundle.h"

#include <system_error>
#include <utility>

#include "platform/foundation/ReadFile.h"
#include "platform/foundation/StringsTable.h"

namespace vel {
namespace {

using Table = decltype(StringsTable::entries);
using Problems = std::vector<Bundle::Problem>;
using std::filesystem::path;

/// What the keys are written in; its table has what differs from them.
constexpr const char* kDevelopmentLanguage = "en";

/// Reads what can be had of `file`. Returns whether that is all of it; if not, adds the problem.
bool readTable(const path& file, Table& into, Problems& problems) {
  std::string bytes;
  if (const std::error_code error = readFile(file, bytes)) {
    problems.push_back(file.string() + ": cannot be read: " + error.message());
    return false;
  }
  StringsTable table = parseStrings(bytes);
  into = std::move(table.entries);
  if (table.error) {
    problems.push_back(file.string() + ":" + std::to_string(table.error->line) + ": " +
                       table.error->message);
  }
  return !table.error;
}

Table readLocalizable(const path& directory, std::vector<std::string> languages,
                      Problems& problems) {
  Table table;
  languages.emplace_back(kDevelopmentLanguage);
  for (const std::string& language : languages) {
    const path file = directory / (language + ".lproj") / "Localizable.strings";
    std::error_code error;  // Whatever it is, but that there is no file, reading comes upon it too.
    if (std::filesystem::status(file, error).type() != std::filesystem::file_type::not_found) {
      readTable(file, table, problems);
      break;
    }
  }
  return table;
}

}  // namespace

Bundle::Bundle(path directory, std::string identifier, Table info, Table localizable)
    : directory_(std::move(directory)),
      identifier_(std::move(identifier)),
      info_(std::move(info)),
      localizable_(std::move(localizable)) {}

std::optional<Bundle> Bundle::open(const path& directory, const Locale& locale,
                                   Problems& problems) {
  const path infoFile = directory / "Info.strings";
  Table info;
  if (!readTable(infoFile, info, problems)) {
    return std::nullopt;
  }
  const auto identifier = info.find("identifier");
  if (identifier == info.end() || identifier->second.empty()) {
    problems.push_back(infoFile.string() + R"(: no "identifier")");
    return std::nullopt;
  }
  std::string name = identifier->second;
  return Bundle(directory, std::move(name), std::move(info),
                readLocalizable(directory, locale.languages(), problems));
}

std::optional<std::string_view> Bundle::info(std::string_view key) const {
  const auto entry = info_.find(key);
  return entry == info_.end() ? std::nullopt : std::optional<std::string_view>(entry->second);
}

std::string_view Bundle::localizedString(std::string_view key) const {
  const auto entry = localizable_.find(key);
  return entry == localizable_.end() ? key : std::string_view(entry->second);
}

}  // namespace vel
