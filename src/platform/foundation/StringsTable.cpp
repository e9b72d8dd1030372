// The parser of ".strings" files: first the encoding, then the grammar.
#include "platform/foundation/StringsTable.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <utility>

namespace vel {
namespace {

constexpr char32_t kFirstHighSurrogate = 0xD800;
constexpr char32_t kFirstLowSurrogate = 0xDC00;
constexpr char32_t kAfterSurrogates = 0xE000;

bool isHighSurrogate(char32_t unit) {
  return unit >= kFirstHighSurrogate && unit < kFirstLowSurrogate;
}

bool isLowSurrogate(char32_t unit) {
  return unit >= kFirstLowSurrogate && unit < kAfterSurrogates;
}

char32_t joinSurrogates(char32_t high, char32_t low) {
  return 0x10000 + ((high - kFirstHighSurrogate) << 10U) + (low - kFirstLowSurrogate);
}

void appendUTF8(std::string& text, char32_t character) {
  const auto append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  const auto appendTail = [&](unsigned shift) { append(0x80 | (character >> shift & 0x3F)); };
  if (character < 0x80) {
    append(character);
    return;
  }
  if (character < 0x800) {
    append(0xC0 | character >> 6U);
  } else {
    if (character < 0x10000) {
      append(0xE0 | character >> 12U);
    } else {
      append(0xF0 | character >> 18U);
      appendTail(12);
    }
    appendTail(6);
  }
  appendTail(0);
}

/// A text in UTF-8, as far as its encoding is sound.
struct Decoded {
  std::string text;
  /// What is wrong right after `text`; null if nothing.
  const char* fault = nullptr;
};

/// The length of the first character of `bytes`, 0 if it is malformed (the Unicode Standard, table
/// 3-7).
std::size_t lengthOfUTF8Character(std::string_view bytes) {
  const auto at = [bytes](std::size_t index) -> unsigned {
    return index < bytes.size() ? static_cast<unsigned char>(bytes[index]) : 0;
  };
  const unsigned lead = at(0);
  if (lead < 0x80) {
    return 1;
  }
  if (lead < 0xC2 || lead > 0xF4) {
    return 0;
  }
  // The limits keep out characters written longer than need be, surrogates, and what is beyond
  // U+10FFFF.
  const unsigned lowest = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
  const unsigned highest = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
  const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
  if (at(1) < lowest || at(1) > highest) {
    return 0;
  }
  for (std::size_t index = 2; index < length; ++index) {
    if ((at(index) & 0xC0U) != 0x80) {
      return 0;
    }
  }
  return length;
}

Decoded decodeUTF8(std::string_view bytes) {
  const char* fault = nullptr;
  std::size_t end = 0;
  while (end < bytes.size()) {
    const std::size_t length = lengthOfUTF8Character(bytes.substr(end));
    if (length == 0 || bytes[end] == '\0') {
      fault = length == 0 ? "malformed UTF-8" : "a NUL character";
      break;
    }
    end += length;
  }
  return {std::string(bytes.substr(0, end)), fault};
}

Decoded decodeUTF16(std::string_view bytes, bool bigEndian) {
  const auto unitAt = [&](std::size_t index) -> char32_t {
    const char32_t first = static_cast<unsigned char>(bytes[index]);
    const char32_t second = static_cast<unsigned char>(bytes[index + 1]);
    return bigEndian ? first << 8U | second : second << 8U | first;
  };
  Decoded result;
  result.text.reserve(bytes.size());
  for (std::size_t index = 0; index < bytes.size(); index += 2) {
    if (bytes.size() - index < 2) {
      result.fault = "malformed UTF-16: half a character at the end";
      break;
    }
    char32_t character = unitAt(index);
    if (character == 0) {
      result.fault = "a NUL character";
      break;
    }
    if (isHighSurrogate(character) && bytes.size() - index >= 4 &&
        isLowSurrogate(unitAt(index + 2))) {
      index += 2;
      character = joinSurrogates(character, unitAt(index));
    } else if (isHighSurrogate(character) || isLowSurrogate(character)) {
      result.fault = "malformed UTF-16: an unpaired surrogate";
      break;
    }
    appendUTF8(result.text, character);
  }
  return result;
}

Decoded decode(std::string_view bytes) {
  using std::string_view_literals::operator""sv;
  if (bytes.starts_with("\xEF\xBB\xBF"sv)) {
    return decodeUTF8(bytes.substr(3));
  }
  if (bytes.starts_with("\xFE\xFF"sv)) {
    return decodeUTF16(bytes.substr(2), true);
  }
  if (bytes.starts_with("\xFF\xFE"sv)) {
    return decodeUTF16(bytes.substr(2), false);
  }
  // Whatever a table begins with is ASCII, so that one byte of it is zero in UTF-16.
  if (bytes.size() >= 2 && (bytes[0] == '\0') != (bytes[1] == '\0')) {
    return decodeUTF16(bytes, bytes[0] == '\0');
  }
  return decodeUTF8(bytes);
}

std::size_t lineOf(std::string_view text, std::size_t position) {
  std::size_t line = 1;
  for (std::size_t index = 0; index < position; ++index) {
    const bool endsInNext =
        text[index] == '\r' && index + 1 < text.size() && text[index + 1] == '\n';
    if (text[index] == '\n' || (text[index] == '\r' && !endsInNext)) {
      ++line;
    }
  }
  return line;
}

bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}

bool isOctal(char c) {
  return c >= '0' && c <= '7';
}

bool isWordCharacter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') ||
         std::string_view("_.-/:$").find(c) != std::string_view::npos;
}

/// Takes a text without NUL. The functions that read return false after a fault.
class Parser {
 public:
  explicit Parser(std::string_view text) : text_(text) {}

  void readEntries(StringsTable& table);

  /// Whether all of the text has been looked at, also after a fault.
  [[nodiscard]] bool isAtEnd() const { return position_ == text_.size(); }

 private:
  bool readEntry(StringsTable& table);
  bool readText(std::string& into);
  bool readQuoted(std::string& into);
  bool readEscape(std::string& into);
  bool readOctal(std::string& into);
  bool readUnicode(std::string& into);
  bool readHexadecimal(char32_t& into);
  bool skipBlanks();
  bool accept(std::string_view token);

  /// NUL at the end.
  [[nodiscard]] char peek() const { return isAtEnd() ? '\0' : text_[position_]; }
  [[nodiscard]] bool isAtText() const { return peek() == '"' || isWordCharacter(peek()); }

  bool fail(std::size_t position, const char* message) {
    error_ = StringsError{lineOf(text_, position), message};
    return false;
  }

  std::string_view text_;
  std::size_t position_ = 0;
  /// Where the last key or value ends: what is missing is missing there, not where the next token
  /// begins, which may be lines away.
  std::size_t textEnd_ = 0;
  std::optional<StringsError> error_;
};

void Parser::readEntries(StringsTable& table) {
  bool isSound = skipBlanks();
  while (isSound && !isAtEnd()) {
    isSound = readEntry(table) && skipBlanks();
  }
  table.error = std::move(error_);
}

bool Parser::readEntry(StringsTable& table) {
  if (!isAtText()) {
    return fail(position_, "expected a key");
  }
  std::string key;
  if (!readText(key) || !skipBlanks()) {
    return false;
  }
  if (accept(";")) {
    table.entries.insert_or_assign(key, key);
    return true;
  }
  if (!accept("=")) {
    return fail(textEnd_, R"(expected "=" or ";" after the key)");
  }
  if (!skipBlanks()) {
    return false;
  }
  if (!isAtText()) {
    return fail(textEnd_, R"(expected a value after "=")");
  }
  std::string value;
  if (!readText(value) || !skipBlanks()) {
    return false;
  }
  if (!accept(";")) {
    return fail(textEnd_, R"(expected ";" after the value)");
  }
  table.entries.insert_or_assign(std::move(key), std::move(value));
  return true;
}

bool Parser::readText(std::string& into) {
  if (peek() == '"') {
    if (!readQuoted(into)) {
      return false;
    }
  } else {
    while (isWordCharacter(peek()) && !text_.substr(position_).starts_with("/*")) {
      into += text_[position_++];
    }
  }
  textEnd_ = position_;
  return true;
}

bool Parser::readQuoted(std::string& into) {
  const std::size_t start = position_++;
  for (;;) {
    const std::size_t end = std::min(text_.find_first_of(R"("\)", position_), text_.size());
    into += text_.substr(position_, end - position_);
    position_ = end;
    if (accept(R"(")")) {
      return true;
    }
    if (isAtEnd()) {
      return fail(start, "unterminated string");
    }
    if (!readEscape(into)) {
      return false;
    }
  }
}

bool Parser::readEscape(std::string& into) {
  constexpr std::string_view kLetters = R"("'\/abfnrtv)";
  constexpr std::string_view kMeanings = "\"'\\/\a\b\f\n\r\t\v";
  const std::size_t start = position_++;
  if (isAtEnd()) {
    return true;  // The string is not terminated, which is the caller's to say.
  }
  if (accept("\r\n") || accept("\r") || accept("\n")) {
    return true;
  }
  if (isOctal(peek())) {
    return readOctal(into);
  }
  if (peek() == 'u' || peek() == 'U') {
    return readUnicode(into);
  }
  const std::size_t index = kLetters.find(peek());
  if (index == std::string_view::npos) {
    return fail(start, R"(unknown escape after "\")");
  }
  into += kMeanings[index];
  ++position_;
  return true;
}

bool Parser::readOctal(std::string& into) {
  const std::size_t start = position_;
  char32_t character = 0;
  for (int digits = 0; digits < 3 && isOctal(peek()); ++digits) {
    character = character * 8 + static_cast<char32_t>(text_[position_++] - '0');
  }
  if (character == 0) {
    return fail(start, "an escape for the NUL character");
  }
  appendUTF8(into, character);
  return true;
}

bool Parser::readUnicode(std::string& into) {
  const std::size_t start = position_++;
  char32_t character = 0;
  if (!readHexadecimal(character)) {
    return false;
  }
  if (character == 0) {
    return fail(start, "an escape for the NUL character");
  }
  char32_t low = 0;
  if (isHighSurrogate(character) && (accept(R"(\u)") || accept(R"(\U)")) && !readHexadecimal(low)) {
    return false;
  }
  if (isHighSurrogate(character) && isLowSurrogate(low)) {
    character = joinSurrogates(character, low);
  } else if (isHighSurrogate(character) || isLowSurrogate(character)) {
    return fail(start, "an escape for half of a surrogate pair");
  }
  appendUTF8(into, character);
  return true;
}

bool Parser::readHexadecimal(char32_t& into) {
  constexpr std::size_t kDigits = 4;
  std::uint16_t value = 0;
  const char* const first = text_.data() + position_;
  const char* const last = first + std::min(kDigits, text_.size() - position_);
  const char* const end = std::from_chars(first, last, value, 16).ptr;
  position_ += static_cast<std::size_t>(end - first);
  into = value;
  return end == first + kDigits ||
         fail(position_, R"(expected four hexadecimal digits after "\u")");
}

/// Comments too.
bool Parser::skipBlanks() {
  for (;;) {
    const std::size_t start = position_;
    if (accept("//")) {
      position_ = std::min(text_.find_first_of("\r\n", position_), text_.size());
    } else if (accept("/*")) {
      position_ = std::min(text_.find("*/", position_), text_.size());
      if (!accept("*/")) {
        return fail(start, "unterminated comment");
      }
    } else if (isBlank(peek())) {
      ++position_;
    } else {
      return true;
    }
  }
}

/// Moves behind `token` if it is next.
bool Parser::accept(std::string_view token) {
  const bool isNext = text_.substr(position_).starts_with(token);
  position_ += isNext ? token.size() : 0;
  return isNext;
}

}  // namespace

StringsTable parseStrings(std::string_view bytes) {
  const Decoded decoded = decode(bytes);
  Parser parser(decoded.text);
  StringsTable table;
  parser.readEntries(table);
  // A fault of the grammar further up comes first; one at the very end only says that the text
  // breaks off.
  if (decoded.fault != nullptr && parser.isAtEnd()) {
    table.error = StringsError{lineOf(decoded.text, decoded.text.size()), decoded.fault};
  }
  return table;
}

}  // namespace vel
