// A small text file that is read whole, again and again.
#pragma once

#include <cstddef>
#include <filesystem>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/linux/FileDescriptor.h"

namespace vel {

/// On procfs and sysfs the file stays open between readings: from offset 0 the kernel gives a fresh
/// text each time (Documentation/filesystems/seq_file.rst). On any other file system it is opened
/// each time, so that a file put in its place is seen. The buffer is kept, so that a reading
/// allocates only when the text has outgrown all before it.
class TextFile {
 public:
  /// The longest text that is read. /proc/stat of a machine with 8,192 processors is about 1 MiB.
  static constexpr std::size_t kMaxSize = std::size_t{16} * 1024 * 1024;

  explicit TextFile(std::filesystem::path path);

  /// The whole text, valid until the next reading. Nothing when the file cannot be read, is not a
  /// regular file or is longer than `kMaxSize`.
  std::optional<std::string_view> read();

  /// What the last `read` returned, empty if that was nothing.
  [[nodiscard]] std::string_view text() const { return {buffer_.data(), size_}; }

 private:
  bool open();
  bool readWhole();
  bool grow();

  std::filesystem::path path_;
  FileDescriptor file_;
  bool stays_ = false;
  std::vector<char> buffer_;
  std::size_t size_ = 0;
};

}  // namespace vel
