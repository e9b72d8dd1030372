#include "host/terminal/LiveDisplay.h"

#include "host/terminal/Signals.h"

namespace vel {

void LiveDisplay::show(const CPUData& record) {
  readings_.read(record, kernel_.logicalProcessorCount());
  paint();
}

void LiveDisplay::resize() {
  screen_.fitToWindow();
  paint();
}

void LiveDisplay::stop() {
  screen_.lend(stopProcess);
  resize();
}

void LiveDisplay::restore() {
  screen_.restore();
  resize();
}

void LiveDisplay::paint() {
  screen_.paint(layOut(readings_, labels_, locale_, screen_.size(), style_));
}

}  // namespace vel
