#include "host/terminal/LiveDisplay.h"

#include <csignal>

#include "host/Signals.h"

namespace vel {

void LiveDisplay::show(const CPUData& record) {
  source_.read(record, content_);
  paint();
}

void LiveDisplay::update() {
  source_.readViews(content_);
  paint();
}

void LiveDisplay::showHelp(bool shown) {
  helpShown_ = shown;
  paint();
}

void LiveDisplay::resize() {
  screen_.fitToWindow();
  paint();
}

void LiveDisplay::stop() {
  screen_.giveBack();
  stopProcess(SIGTSTP);
}

void LiveDisplay::restore() {
  screen_.lose();
  paint();
}

void LiveDisplay::paint() {
  if (!screen_.take()) {
    panel_.setOnScreen(false);
    return;
  }
  const auto [columns, rows] = screen_.size();
  const Page page = layOut(content_, labels_, locale_, {columns, rows}, style_);
  panel_.setOnScreen(page.hasProcesses);
  screen_.paint(helpShown_ ? helpPage(style_.keys, labels_, columns, rows) : page.lines);
}

}  // namespace vel
