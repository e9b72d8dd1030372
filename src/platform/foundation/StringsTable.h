// Reads ".strings" files: "key" = "value"; pairs with comments.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace vel {

/// Where and why a text stops being a strings table.
struct StringsError {
  std::size_t line = 0;  ///< counted from 1; LF, CR LF and CR end a line
  std::string message;   ///< one line, without the file's name
};

struct StringsTable {
  /// Both in UTF-8; the last of equal keys holds.
  std::map<std::string, std::string, std::less<>> entries;
  /// The first fault. The entries before it are in `entries`.
  std::optional<StringsError> error;
};

/// `bytes` is UTF-8 or UTF-16, with or without a byte-order mark (UTF-16 without one is known by
/// its zero bytes).
///
/// Grammar: entries `key = value ;`, where key and value are strings in double quotes or bare words
/// of ASCII letters, digits and "_.-/:$"; a lone `key ;` stands for itself. Comments are /* … */,
/// and // to the end of the line, except that // inside a bare word is part of it. Quoted strings
/// may span lines. The character NUL has no place in a table.
///
/// Escapes in quoted strings: \" \' \\ \/ \a \b \f \n \r \t \v; \ and a line break, both dropped;
/// \ and one to three octal digits, a character's number; \u or \U with four hexadecimal digits, of
/// which a surrogate pair is one character.
///
/// Any bytes are safe to give. A syntax error, malformed encoding included, costs the entries from
/// there on.
StringsTable parseStrings(std::string_view bytes);

}  // namespace vel
