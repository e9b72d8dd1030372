#include "host/terminal/Summary.h"

#include <string>

#include "host/terminal/Text.h"

namespace vel {
namespace {

std::string textOf(const Line& line) {
  std::wstring text;
  for (const Span& span : line) {
    text += span.text;
  }
  text.erase(text.find_last_not_of(L' ') + 1);
  return encode(text);
}

}  // namespace

void Summary::show(const CPUData& record) {
  source_.read(record, content_);
  // There is no history yet.
  content_.graph = nullptr;
  std::string text;
  for (const Line& line : layOut(content_, labels_, locale_, size_, style_).lines) {
    text += textOf(line) + "\n";
  }
  output_.write(text);
}

}  // namespace vel
