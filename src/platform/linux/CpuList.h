// A set of processors as the kernel writes it: "0-3,5,7-9".
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace vel {

/// Ascending, by the kernel's own numbers for its processors. The format is that of
/// Documentation/admin-guide/cputopology.rst.
class CpuList {
 public:
  /// The highest number that is believed. Linux can be built for 8,192 processors; the bound keeps
  /// tables that are indexed by these numbers small, whatever a file says.
  static constexpr std::int32_t kMaxCpu = 65535;

  /// Reads one line with its newline, in place of what was here before; the storage is kept. False,
  /// and an empty list, when it is anything but at least one processor in ascending order up to
  /// `kMaxCpu`.
  bool parse(std::string_view text);

  /// `cpu` must be higher than all before it.
  void append(std::int32_t cpu);

  void clear() { ranges_.clear(); }

  [[nodiscard]] bool empty() const { return ranges_.empty(); }
  [[nodiscard]] std::uint32_t count() const;
  [[nodiscard]] bool contains(std::int32_t cpu) const;
  [[nodiscard]] bool containsAll(const CpuList& others) const;

  /// Of a list that is not empty.
  [[nodiscard]] std::int32_t first() const { return ranges_.front().first; }
  [[nodiscard]] std::int32_t last() const { return ranges_.back().last; }

  template <typename Visit>
  void forEach(Visit visit) const {
    for (const Range& range : ranges_) {
      for (std::int32_t cpu = range.first; cpu <= range.last; ++cpu) {
        visit(cpu);
      }
    }
  }

  bool operator==(const CpuList&) const = default;

 private:
  struct Range {
    std::int32_t first = 0;
    std::int32_t last = 0;
    bool operator==(const Range&) const = default;
  };

  bool parseRanges(std::string_view line);
  bool appendRange(Range range);

  /// Ascending, with a gap between one and the next.
  std::vector<Range> ranges_;
};

}  // namespace vel
