// One reading of the processes, each application's helpers folded into its entry.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "platform/kernel/Kernel.h"
#include "processes/PidMap.h"

namespace vel {

/// A top-level process, one whose parent is the first process or not known, has a named entry. Any
/// other is a child in its parent's entry, which exists without a name if the parent is a child
/// itself. Entries are kept contiguously, and all storage from reading to reading.
class ProcessTable {
 public:
  struct Entry {
    using Name = std::array<char, ProcessRecord::kNameSize>;

    /// Of a top-level process: seconds from its start to the reading. 0 otherwise.
    double runningTime = 0.0;

    // Of the process and its direct children together. Grandchildren are not included.
    float residentSize = 0.0F;  ///< bytes
    float virtualSize = 0.0F;   ///< bytes
    double totalCPUTime =
        0.0;  ///< seconds since start; after months a float loses the last refresh
    std::int32_t threads = 0;
    std::int32_t processes = 0;

    /// CPU seconds per second since the reading before: 1 is one core fully busy. Nothing if that
    /// reading did not have the process.
    std::optional<float> CPUDynamic;

    Name command{};  ///< of a top-level process, filled up with NUL
    std::int32_t pid = 0;

    /// Only a top-level process has a running time, and a name, which is never empty.
    [[nodiscard]] bool isTopLevel() const { return command.front() != '\0'; }
    [[nodiscard]] std::string_view name() const;

   private:
    friend class ProcessTable;
    static constexpr std::uint32_t kNoChild = 0xFFFFFFFF;

    std::uint32_t firstChild_ = kNoChild;
    std::uint32_t lastChild_ = kNoChild;
  };

  /// Empties the table and makes room for `atMost` entries.
  void clear(std::size_t atMost = 0);

  /// Makes the process's entry, which may exist for its children's sake, that of a top-level one.
  void addTopLevel(std::int32_t pid, const Entry::Name& command, double runningTime);
  void addChild(std::int32_t parent, std::int32_t child);

  [[nodiscard]] std::vector<Entry>& entries() { return entries_; }
  [[nodiscard]] const std::vector<Entry>& entries() const { return entries_; }
  [[nodiscard]] const Entry* find(std::int32_t pid) const;

  /// Visits the pids of the entry's children, in the order in which they were added.
  template <typename Visit>
  void forEachChild(const Entry& entry, Visit visit) const {
    for (auto i = entry.firstChild_; i != Entry::kNoChild; i = children_[i].next) {
      visit(children_[i].pid);
    }
  }

 private:
  struct Child {
    std::int32_t pid = 0;
    std::uint32_t next = Entry::kNoChild;
  };

  Entry& findOrAdd(std::int32_t pid);

  std::vector<Entry> entries_;
  std::vector<Child> children_;    ///< of all entries, each entry's linked into a list
  PidMap<std::uint32_t> indices_;  ///< into `entries_`
};

}  // namespace vel
