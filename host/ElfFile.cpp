#include "host/ElfFile.h"

#include <elf.h>
#include <link.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <fstream>
#include <string_view>

namespace vel {
namespace {

using Header = ElfW(Ehdr);
using Segment = ElfW(Phdr);

constexpr const char* kCutShort = "cut short";

/// Returns how many bytes of `into` the file could fill.
template <typename T>
std::size_t readAt(std::ifstream& file, std::uint64_t offset, T& into) {
  file.seekg(static_cast<std::streamoff>(offset));
  file.read(reinterpret_cast<char*>(&into), sizeof into);
  return static_cast<std::size_t>(file.gcount());
}

bool isForSameMachine(const Header& a, const Header& b) {
  return a.e_ident[EI_CLASS] == b.e_ident[EI_CLASS] && a.e_ident[EI_DATA] == b.e_ident[EI_DATA] &&
         a.e_machine == b.e_machine;
}

/// The sum of `offset` and `size` may be more than the type holds.
bool isWithin(std::uint64_t length, std::uint64_t offset, std::uint64_t size) {
  return offset <= length && size <= length - offset;
}

bool holdsItsSegments(std::ifstream& file, std::uint64_t length, const Header& header) {
  if (!isWithin(length, header.e_phoff, std::uint64_t{header.e_phnum} * sizeof(Segment))) {
    return false;
  }
  for (std::uint64_t i = 0; i < header.e_phnum; ++i) {
    Segment segment{};
    readAt(file, header.e_phoff + i * sizeof segment, segment);
    if (segment.p_type == PT_LOAD && !isWithin(length, segment.p_offset, segment.p_filesz)) {
      return false;
    }
  }
  return true;
}

}  // namespace

std::string sharedLibraryFault(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary | std::ios::ate);
  if (!stream) {
    return "";
  }
  const auto length = static_cast<std::uint64_t>(stream.tellg());
  Header header{};
  const std::size_t size = readAt(stream, 0, header);
  if (std::memcmp(header.e_ident, ELFMAG, std::min<std::size_t>(size, SELFMAG)) != 0) {
    return "not a shared library";
  }
  if (size < sizeof header) {
    return kCutShort;
  }
  Header own{};
  std::ifstream program("/proc/self/exe", std::ios::binary);
  if (readAt(program, 0, own) == sizeof own && !isForSameMachine(header, own)) {
    return "for another kind of machine";
  }
  if (header.e_type != ET_DYN) {
    return "not a shared library";
  }
  return holdsItsSegments(stream, length, header) ? "" : kCutShort;
}

}  // namespace vel
