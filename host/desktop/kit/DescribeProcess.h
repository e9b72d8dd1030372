// What is told of a process when the user asks.
#pragma once

#include <QString>
#include <cstdint>
#include <functional>

namespace vel {

/// Lines of plain text, empty where nothing is known. Reads files: not for every refresh.
using DescribeProcess = std::function<QString(std::int64_t pid)>;

}  // namespace vel
