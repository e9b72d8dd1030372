#include "host/terminal/Screen.h"

// Its macros would rename other people's functions.
#define NCURSES_NOMACROS
#include <curses.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

#include "host/Signals.h"
#include "host/terminal/StallGuard.h"

namespace vel {
namespace {

constexpr std::size_t kTones = 7;
constexpr int kManyColours = 256;

struct Colour {
  Tone tone;
  short ofMany;  ///< in the 256-colour cube: muted, and legible on light and on dark
  short ofFew;
};
constexpr std::array<Colour, 3> kColours{{
    {Tone::gauge, 71, COLOR_GREEN},
    {Tone::gaugeIdle, 67, COLOR_BLUE},
    {Tone::busy, 167, COLOR_RED},
}};

bool wantsColour() {
  // https://no-color.org
  const char* noColour = std::getenv("NO_COLOR");
  return noColour == nullptr || *noColour == '\0';
}

/// Whether the terminal takes output; not while it is stopped by Ctrl-S or its connection is
/// stalled.
bool isReady() {
  pollfd descriptor{STDOUT_FILENO, POLLOUT, 0};
  return poll(&descriptor, 1, 0) == 1 && (descriptor.revents & POLLOUT) != 0;
}

termios currentSettings() {
  termios settings{};
  tcgetattr(STDOUT_FILENO, &settings);
  return settings;
}

void leave() {
  // While Ctrl-S holds the output, the farewell would wait, too. The kernel takes TCOON for an
  // answer to TCOOFF alone.
  tcflow(STDOUT_FILENO, TCOOFF);
  tcflow(STDOUT_FILENO, TCOON);
  endwin();
}

}  // namespace

struct Screen::State {
  const termios before = currentSettings();
  SCREEN* screen = nullptr;
  WINDOW* window = nullptr;  ///< all of it
  bool taken = true;
  std::array<attr_t, kTones> attributes{};
  std::array<short, kTones> pairs{};

  void chooseAttributes();
  void chooseColours();
  void paintLine(int row, const Line& line) const;
};

Screen::Screen() : state_(std::make_unique<State>()) {
  const StallGuard guard(state_->before, StallGuard::Reason::goingOn);
  state_->screen = newterm(nullptr, stdout, stdin);
  if (state_->screen == nullptr) {
    throw std::runtime_error("the terminal cannot be set up");
  }
  state_->window = stdscr;
  cbreak();
  noecho();
  curs_set(0);
  state_->chooseAttributes();
  fitToWindow();
}

Screen::~Screen() {
  if (!isendwin() && isForeground(STDOUT_FILENO)) {
    const StallGuard guard(state_->before, StallGuard::Reason::ending);
    leave();
  }
  delscreen(state_->screen);
}

void Screen::State::chooseAttributes() {
  attributes[static_cast<std::size_t>(Tone::strong)] = A_BOLD;
  attributes[static_cast<std::size_t>(Tone::faint)] = A_DIM;
  attributes[static_cast<std::size_t>(Tone::chosen)] = A_REVERSE;
  if (wantsColour() && has_colors() && start_color() == OK) {
    chooseColours();
  } else {
    attributes[static_cast<std::size_t>(Tone::busy)] = A_BOLD;
  }
}

void Screen::State::chooseColours() {
  const short background = use_default_colors() == OK ? -1 : COLOR_BLACK;
  short pair = 1;
  for (const Colour& colour : kColours) {
    init_pair(pair, COLORS >= kManyColours ? colour.ofMany : colour.ofFew, background);
    pairs[static_cast<std::size_t>(colour.tone)] = pair;
    ++pair;
  }
}

LayoutSize Screen::size() const {
  return {getmaxx(state_->window), getmaxy(state_->window)};
}

void Screen::fitToWindow() {
  winsize window{};
  if (ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_row > 0 && window.ws_col > 0) {
    resize_term(window.ws_row, window.ws_col);
    clearok(state_->window, TRUE);
  }
}

void Screen::paint(const std::vector<Line>& lines) {
  werase(state_->window);
  int row = 0;
  for (const Line& line : lines) {
    state_->paintLine(row, line);
    ++row;
  }
  if (isReady()) {
    const StallGuard guard(state_->before, StallGuard::Reason::goingOn);
    wrefresh(state_->window);
  }
}

void Screen::ringBell() {
  if (isReady()) {
    const StallGuard guard(state_->before, StallGuard::Reason::goingOn);
    beep();
  }
}

void Screen::State::paintLine(int row, const Line& line) const {
  wmove(window, row, 0);
  for (const Span& span : line) {
    const auto tone = static_cast<std::size_t>(span.tone);
    wattr_set(window, attributes[tone], pairs[tone], nullptr);
    waddnwstr(window, span.text.data(), static_cast<int>(span.text.size()));
  }
}

bool Screen::take() {
  const bool ours = isForeground(STDOUT_FILENO);
  if (ours && !state_->taken) {
    if (!isendwin()) {
      // Otherwise the next painting sees to it.
      reset_prog_mode();
    }
    fitToWindow();
    clearok(state_->window, TRUE);
  }
  state_->taken = ours;
  return ours;
}

void Screen::giveBack() {
  if (!isendwin() && isForeground(STDOUT_FILENO)) {
    const StallGuard guard(state_->before, StallGuard::Reason::goingOn);
    leave();
  }
  lose();
}

void Screen::lose() {
  state_->taken = false;
}

}  // namespace vel
