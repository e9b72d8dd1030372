// A directory of resources with an identifier: the module's own, or the host's.
#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/foundation/Locale.h"

namespace vel {

/// Laid out as
///
///     Info.strings   "identifier" = "…"; and what else the kind of bundle needs
///     <language>.lproj/Localizable.strings
///
class Bundle {
 public:
  /// One problem: "<file>: <what>" or "<file>:<line>: <what>".
  using Problem = std::string;

  /// Opens the bundle at `directory` and reads the "Localizable" table of the first of the locale's
  /// languages that it has, else of English. Returns nothing, and adds to `problems`, when
  /// Info.strings cannot be read, is not a strings table or has no "identifier". A "Localizable"
  /// table that cannot be read or parsed whole adds a problem too, but only costs its entries.
  static std::optional<Bundle> open(const std::filesystem::path& directory, const Locale& locale,
                                    std::vector<Problem>& problems);

  [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }
  [[nodiscard]] const std::string& identifier() const { return identifier_; }

  /// An entry of Info.strings.
  [[nodiscard]] std::optional<std::string_view> info(std::string_view key) const;

  /// The entry of the "Localizable" table, or `key` itself when the table has none. The result
  /// lives as long as both the bundle and `key`.
  [[nodiscard]] std::string_view localizedString(std::string_view key) const;

 private:
  using Table = std::map<std::string, std::string, std::less<>>;
  Bundle(std::filesystem::path directory, std::string identifier, Table info, Table localizable);

  std::filesystem::path directory_;
  std::string identifier_;
  Table info_;
  Table localizable_;
};

}  // namespace vel
