// The whole record of readings as one JSON object a refresh, each on a line of its own.
#pragma once

#include <string>

#include "host/terminal/Display.h"
#include "host/terminal/Output.h"

namespace vel {

class JsonLines : public Display {
 public:
  explicit JsonLines(const Output& output) : output_(output) {}

  void show(const CPUData& record) override;

 private:
  const Output& output_;
  std::string line_;
};

/// Replaces `text` by the object, in ASCII and without a line break. Every key has its own name.
/// Numbers have the shortest form that reads back to the same float; what JSON has no number for is
/// null. Bytes that are not UTF-8 are read as U+FFFD.
void writeJson(const CPUData& record, std::string& text);

}  // namespace vel
