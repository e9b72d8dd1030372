// Reads the environment's locale without touching the process's own.
#include "platform/foundation/Locale.h"

#include <langinfo.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <initializer_list>
#include <limits>
#include <memory>
#include <optional>
#include <type_traits>
#include <utility>

namespace vel {
namespace {

struct FreeLocale {
  void operator()(locale_t locale) const { freelocale(locale); }
};
using LocaleHandle = std::unique_ptr<std::remove_pointer_t<locale_t>, FreeLocale>;

std::string_view environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? std::string_view{} : value;
}

/// The name of the locale that the environment chooses for a category ("man 7 locale").
std::string localeName(const char* category) {
  for (const char* const variable : {"LC_ALL", category, "LANG"}) {
    if (const std::string_view name = environment(variable); !name.empty()) {
      return std::string(name);
    }
  }
  return "C";
}

/// Null if the machine does not have the locale.
LocaleHandle openLocale(const std::string& name, int categories) {
  return LocaleHandle(newlocale(categories, name.c_str(), nullptr));
}

std::string decimalSeparatorOfEnvironment() {
  // The encoding is LC_CTYPE's to tell; the separator is in the one of its own locale.
  const auto locale = openLocale(localeName("LC_NUMERIC"), LC_NUMERIC_MASK | LC_CTYPE_MASK);
  if (locale == nullptr) {
    return ".";
  }
  const std::string_view separator = nl_langinfo_l(RADIXCHAR, locale.get());
  const std::string_view encoding = nl_langinfo_l(CODESET, locale.get());
  const bool isASCII = separator.size() == 1 && static_cast<unsigned char>(separator[0]) < 0x80;
  return std::string(isASCII || (!separator.empty() && encoding == "UTF-8") ? separator : ".");
}

bool isUntranslated(std::string_view name) {
  return name == "C" || name == "POSIX" || name.starts_with("C.");
}

bool isDirectoryName(std::string_view name) {
  constexpr std::string_view kLetters =
      "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_-";
  return !name.empty() && name.find_first_not_of(kLetters) == std::string_view::npos;
}

void addOnce(std::vector<std::string>& languages, std::string_view language) {
  if (std::find(languages.begin(), languages.end(), language) == languages.end()) {
    languages.emplace_back(language);
  }
}

std::vector<std::string> languagesOfEnvironment() {
  const std::string name = localeName("LC_MESSAGES");
  if (isUntranslated(name) || openLocale(name, LC_MESSAGES_MASK) == nullptr) {
    return {};
  }
  const std::string_view preferred = environment("LANGUAGE");
  std::string_view rest = preferred.empty() ? name : preferred;
  std::vector<std::string> languages;
  while (!rest.empty()) {
    const std::string_view entry = rest.substr(0, rest.find(':'));
    rest.remove_prefix(std::min(entry.size() + 1, rest.size()));
    if (isUntranslated(entry)) {
      break;  // The texts in the code are wanted before whatever follows.
    }
    const std::string_view variant = entry.substr(0, entry.find_first_of(".@"));
    const std::string_view language = variant.substr(0, variant.find('_'));
    if (isDirectoryName(variant) && !language.empty()) {
      addOnce(languages, variant);
      addOnce(languages, language);
    }
  }
  return languages;
}

}  // namespace

Locale::Locale(std::string decimalSeparator, std::vector<std::string> languages)
    : decimalSeparator_(std::move(decimalSeparator)), languages_(std::move(languages)) {}

Locale Locale::current() {
  return Locale(decimalSeparatorOfEnvironment(), languagesOfEnvironment());
}

std::string Locale::number(double value, int decimals) const {
  if (std::isnan(value)) {
    return "nan";  // to_chars would show its sign.
  }
  constexpr int kMostDecimals = 100;
  constexpr std::size_t kSignAndPoint = 2;
  std::array<char, kSignAndPoint + std::numeric_limits<double>::max_exponent10 + 1 + kMostDecimals>
      buffer;
  const std::to_chars_result end =
      std::to_chars(buffer.data(), buffer.data() + buffer.size(), value, std::chars_format::fixed,
                    std::clamp(decimals, 0, kMostDecimals));
  std::string text(buffer.data(), end.ptr);
  if (const std::size_t point = text.find('.'); point != std::string::npos) {
    text.replace(point, 1, decimalSeparator_);
  }
  return text;
}

std::string Locale::formatInteger(std::string_view format, std::int64_t value) {
  std::string text;
  bool placed = false;
  while (!format.empty()) {
    const std::size_t percent = std::min(format.find('%'), format.size());
    text += format.substr(0, percent);
    format.remove_prefix(percent);
    if (format.starts_with("%%")) {
      text += '%';
      format.remove_prefix(2);
    } else if (!placed && format.starts_with("%ld")) {
      text += std::to_string(value);
      format.remove_prefix(3);
      placed = true;
    } else if (!format.empty()) {
      text += '%';
      format.remove_prefix(1);
    }
  }
  return text;
}

}  // namespace vel
