// Texts from elsewhere, such as the names of processes, made harmless to show.
#pragma once

#include <QString>
#include <string_view>

namespace vel {

/// One line of text. What is no UTF-8, breaks the line, is invisible or turns the direction of what
/// stands around it is a replacement character.
[[nodiscard]] QString plainText(std::string_view utf8);

}  // namespace vel
