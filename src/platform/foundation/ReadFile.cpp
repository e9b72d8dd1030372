#include "platform/foundation/ReadFile.h"

#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <memory>

namespace vel {
namespace {

constexpr std::uintmax_t kLargestFile = 16U << 20U;

struct CloseFile {
  void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

}  // namespace

std::error_code readFile(const std::filesystem::path& file, std::string& into) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  if (error) {
    return error;
  }
  if (size > kLargestFile) {
    return std::make_error_code(std::errc::file_too_large);
  }
  const std::unique_ptr<std::FILE, CloseFile> stream(std::fopen(file.c_str(), "rbe"));
  if (stream == nullptr) {
    return {errno, std::generic_category()};
  }
  into.resize(size);
  into.resize(std::fread(into.data(), 1, into.size(), stream.get()));
  return std::ferror(stream.get()) != 0 ? std::make_error_code(std::errc::io_error) : error;
}

}  // namespace vel
