#include "host/terminal/TerminalType.h"

#include <curses.h>
#include <term.h>
#include <unistd.h>

#include <cstdlib>

namespace vel {
namespace {

std::string quotedName() {
  const char* name = std::getenv("TERM");
  return name != nullptr ? "\"" + std::string(name) + "\"" : "(none)";
}

}  // namespace

std::string terminalTypeFault() {
  int result = 0;
  if (setupterm(nullptr, STDOUT_FILENO, &result) == ERR) {
    return "the terminal type " + quotedName() + " is unknown";
  }
  const bool able = cursor_address != nullptr && clear_screen != nullptr;
  del_curterm(cur_term);
  return able ? "" : "the terminal type " + quotedName() + " cannot place text on the screen";
}

}  // namespace vel
