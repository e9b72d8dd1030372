#include "host/Report.h"

#include <unistd.h>

#include <cstddef>

namespace vel {
namespace {

bool isControl(unsigned char byte) {
  return byte < 0x20 || byte == 0x7f;
}

/// U+0080 to U+009F are C2 80 to C2 9F; terminals obey some of them.
bool isC1Control(std::string_view text) {
  return text.size() >= 2 && text[0] == '\xc2' && static_cast<unsigned char>(text[1]) < 0xa0;
}

}  // namespace

std::string withoutControls(std::string_view text) {
  std::string clean;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (isC1Control(text.substr(i))) {
      ++i;
      clean += '?';
    } else {
      clean += isControl(static_cast<unsigned char>(text[i])) ? '?' : text[i];
    }
  }
  return clean;
}

void report(std::string_view program, std::string_view message) {
  const std::string line = std::string(program) + ": " + withoutControls(message) + "\n";
  [[maybe_unused]] const auto size = write(STDERR_FILENO, line.data(), line.size());
}

}  // namespace vel
