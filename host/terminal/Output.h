// Writing to whoever reads: a pipe, a file, a terminal.
#pragma once

#include <exception>
#include <string_view>

#include "host/EventDescriptor.h"

namespace vel {

/// The reader has gone, which is no fault.
class OutputClosed : public std::exception {};

/// SIGPIPE must be ignored.
class Output {
 public:
  /// While it waits for a slow reader it watches `interrupt`, or nothing if that is -1. Throws
  /// std::system_error.
  explicit Output(int descriptor, int interrupt = -1);

  /// Writes all of `text`, unless `interrupt` becomes readable while the reader is not ready: then
  /// the rest is dropped. Throws OutputClosed, or std::system_error for any other fault.
  void write(std::string_view text) const;

 private:
  [[nodiscard]] bool waitForReader() const;
  [[nodiscard]] bool pause() const;

  int interrupt_;
  bool isTerminal_;
  EventDescriptor file_;
};

}  // namespace vel
