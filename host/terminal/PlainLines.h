// One line of text a refresh, for pipes, logs and terminals that can do no more.
#pragma once

#include <string>

#include "host/terminal/Display.h"
#include "host/terminal/Output.h"
#include "host/terminal/Readings.h"

namespace vel {

/// In English and with a decimal point whatever the locale, so that a search for a word finds it.
class PlainLines : public Display {
 public:
  explicit PlainLines(const Output& output) : output_(output) {}

  void show(const CPUData& record) override;

 private:
  const Output& output_;
  Readings readings_;
};

std::string plainLine(const Readings& readings);

}  // namespace vel
