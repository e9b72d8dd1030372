// Owns an open file: an event source that a loop polls, or a terminal.
#pragma once

namespace vel {

class EventDescriptor {
 public:
  /// Takes over what a system call returned. Throws std::system_error with errno, naming `call`, if
  /// that is -1.
  EventDescriptor(int descriptor, const char* call);
  ~EventDescriptor();
  EventDescriptor(const EventDescriptor&) = delete;
  EventDescriptor& operator=(const EventDescriptor&) = delete;

  [[nodiscard]] int get() const { return descriptor_; }

 private:
  int descriptor_;
};

}  // namespace vel
