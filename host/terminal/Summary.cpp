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
  item_.read(itemView_);
  readings_.read(record, running_.ofThisRefresh());
  std::string text;
  for (const Line& line : layOut(item_, readings_, labels_, locale_, size_, style_)) {
    text += textOf(line) + "\n";
  }
  output_.write(text);
}

}  // namespace vel
