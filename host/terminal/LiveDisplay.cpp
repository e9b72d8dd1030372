#include "host/terminal/LiveDisplay.h"

#include <csignal>

#include "host/Signals.h"

namespace vel {

void LiveDisplay::show(const CPUData& record) {
  item_.read(itemView_);
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
    screen_.paint(layOut(item_, readings_, labels_, locale_, screen_.size(), style_));
  }
}

}  // namespace vel
