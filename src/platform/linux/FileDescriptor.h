// An open file, closed with its owner.
#pragma once

#include <filesystem>

namespace vel {

class FileDescriptor {
 public:
  FileDescriptor() = default;
  /// Takes over what a system call has returned, -1 for nothing open.
  explicit FileDescriptor(int number) : number_(number) {}
  ~FileDescriptor() { close(); }
  FileDescriptor(const FileDescriptor&) = delete;
  FileDescriptor& operator=(const FileDescriptor&) = delete;

  /// Opens for reading, in place of what was open before. `flags` are further ones of open(2).
  /// Neither this nor a reading blocks, even if someone has put a FIFO there.
  bool open(const std::filesystem::path& path, int flags = 0);

  /// Likewise, with `path` relative to an open directory. After false, errno tells why.
  bool openAt(int directory, const char* path, int flags = 0);

  void close();

  [[nodiscard]] bool isOpen() const { return number_ >= 0; }
  [[nodiscard]] int number() const { return number_; }

  /// The file system's magic number (man 2 statfs), 0 if unknown.
  [[nodiscard]] long fileSystem() const;

 private:
  int number_ = -1;
};

}  // namespace vel
