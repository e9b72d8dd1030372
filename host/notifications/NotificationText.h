// Texts from elsewhere, such as the names of processes, made fit for a notification.
#pragma once

#include <string>
#include <string_view>

namespace vel {

/// One line of UTF-8 that the bus accepts. A replacement character stands for each byte of what is
/// no UTF-8, and for each character that is none for interchange, that controls the output, is
/// invisible or turns the direction of what stands around it.
[[nodiscard]] std::string notificationText(std::string_view text);

/// For a server that takes its texts for markup.
[[nodiscard]] std::string withEscapedMarkup(std::string_view text);

}  // namespace vel
