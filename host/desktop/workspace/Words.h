// Takes the lists and texts of desktop entries apart. ASCII throughout, as their identifiers are.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace vel {

/// The parts of `text` between any of `separators`, without empty ones.
std::vector<std::string> split(std::string_view text, std::string_view separators);

std::string lowerCase(std::string_view text);

/// The runs of letters and digits, in lower case.
std::vector<std::string> wordsOf(std::string_view text);

}  // namespace vel
