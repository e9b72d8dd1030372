// The user's way of writing numbers, and the languages that the user reads.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace vel {

class Locale {
 public:
  explicit Locale(std::string decimalSeparator = ".", std::vector<std::string> languages = {});

  /// The locale of the process's environment, whatever the process has set with setlocale. A locale
  /// that the machine does not have counts as "C".
  static Locale current();

  /// One character, in UTF-8 one or more bytes. "." if the locale's own is neither ASCII nor UTF-8.
  [[nodiscard]] const std::string& decimalSeparator() const { return decimalSeparator_; }

  /// Preferred first, without encoding and modifier, each with its country before the bare language
  /// ("de_AT", "de"). Empty for "C" and "POSIX". From LANGUAGE, LC_ALL, LC_MESSAGES and LANG as
  /// gettext reads them ("info gettext", "Locale Environment Variables"). Only ASCII letters,
  /// digits, "_" and "-", so that they can name directories; other entries are left out.
  [[nodiscard]] const std::vector<std::string>& languages() const { return languages_; }

  /// `value` with `decimals` digits after the separator, correctly rounded, an exact tie to the
  /// even digit, as printf does it. Not a number and infinities as "nan", "inf" and "-inf".
  /// `decimals` outside 0 to 100 counts as the nearer of these.
  [[nodiscard]] std::string number(double value, int decimals) const;

  /// `format` with its first "%ld" replaced by `value` and every "%%" by "%". `format` comes from a
  /// resource file, so it is never given to printf: any other conversion stays as it stands. The
  /// digits are those of printf's %ld, which are ASCII and without grouping in every locale.
  [[nodiscard]] static std::string formatInteger(std::string_view format, std::int64_t value);

 private:
  std::string decimalSeparator_;
  std::vector<std::string> languages_;
};

}  // namespace vel
