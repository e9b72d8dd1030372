// Text as a terminal shows it: characters with a width in columns.
#pragma once

#include <string>
#include <string_view>

namespace vel {

/// The characters of a UTF-8 text. What is malformed, and what the terminal's locale (LC_CTYPE)
/// cannot show, becomes "?", as do control characters and invisible ones that act on others.
std::wstring decode(std::string_view utf8);

/// The bytes of `text` in the terminal's locale.
std::string encode(std::wstring_view text);

/// In columns.
int widthOf(std::wstring_view text);

/// As much of the front of `text` as fits.
std::wstring_view clipped(std::wstring_view text, int columns);

/// `text`, its end replaced by an ellipsis where it does not fit.
std::wstring shortened(std::wstring_view text, int columns);

/// Takes the front of `text` that fits, and with it the blank at which it ends: whole words if
/// there is room for one.
std::wstring_view takeLine(std::wstring_view& text, int columns);

std::wstring paddedLeft(std::wstring_view text, int columns);
std::wstring paddedRight(std::wstring_view text, int columns);

}  // namespace vel
