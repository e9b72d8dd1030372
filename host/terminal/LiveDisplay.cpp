#include "host/terminal/LiveDisplay.h"

#include <csignal>

#include "host/terminal/Signals.h"

namespace vel {

void LiveDisplay::show(const CPUData& record) {
  readings_.read(record, running_.ofThisRefresh());
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
  if (screen_.take()) {
    screen_.paint(layOut(readings_, labels_, locale_, screen_.size(), style_));
  }
}

}  // namespace vel
