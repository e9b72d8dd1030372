// The user's wish to end a process that a text names.
#pragma once

#include <QPoint>
#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

namespace vel {

struct EndRequest {
  std::int64_t pid = 0;
  std::string name;                     ///< as the module has set it, any bytes
  std::chrono::nanoseconds shownAt{0};  ///< bootTime() when the text was last said to name it
  QPoint position;                      ///< on the screen, where a menu should open
};

using OfferEnding = std::function<void(const EndRequest&)>;

}  // namespace vel
