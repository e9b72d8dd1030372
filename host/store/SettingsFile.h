// The settings file on disk: read whole, replaced whole, moved aside.
#pragma once

#include <filesystem>
#include <string>

namespace vel {

/// What the system refuses throws std::system_error, whose text names the file.
class SettingsFile {
 public:
  /// A relative path starts from the working directory of now.
  explicit SettingsFile(const std::filesystem::path& path);

  [[nodiscard]] const std::filesystem::path& path() const { return path_; }

  /// Makes the file's directory, with mode 0700, if it is missing.
  void makeDirectory() const;

  /// Keeps other programs that use this class from changing the file, for as long as it exists. The
  /// lock is the directory's: the file itself is replaced by every change.
  class Lock {
   public:
    /// Waits. The directory must exist.
    explicit Lock(const SettingsFile& file);
    ~Lock();
    Lock(const Lock&) = delete;
    Lock& operator=(const Lock&) = delete;

   private:
    int descriptor_;
  };

  /// Empty if there is no file. Throws SettingsFault if it is too large or not a regular file.
  [[nodiscard]] std::string read() const;

  /// Whatever happens, the file then holds either its old text or this one, on the disk itself. It
  /// keeps its mode and, as far as the user may, its owner; a link stays and its target is
  /// replaced. To be called under the lock, as is moveAside().
  void write(const std::string& text) const;

  /// Returns the new path, which is "<path>.broken-<UTC time>" and was not in use. A link stays,
  /// unless its target is no regular file and so not ours to move.
  [[nodiscard]] std::filesystem::path moveAside() const;

 private:
  std::filesystem::path path_;
};

}  // namespace vel
