// The whole record of readings as one JSON object a refresh, each on a line of its own.
#pragma once

#include <functional>
#include <string>

#include "host/terminal/Display.h"
#include "host/terminal/Output.h"
#include "host/terminal/RowUsers.h"

namespace vel {

using UserOf = std::function<std::string(const std::string& pid)>;

class JsonLines : public Display {
 public:
  /// `kernel` outlives this.
  JsonLines(const Output& output, LinuxKernel& kernel) : output_(output), users_(kernel) {}

  void show(const CPUData& record) override;

 private:
  const Output& output_;
  RowUsers users_;
  std::string line_;
};

/// Replaces `text` by the object, in ASCII and without a line break. Every key has its own name.
/// Numbers have the shortest form that reads back to the same float; what JSON has no number for is
/// null. Bytes that are not UTF-8 are read as U+FFFD. `userOf` tells whose the process of that pid
/// is.
void writeJson(const CPUData& record, const UserOf& userOf, std::string& text);

}  // namespace vel
