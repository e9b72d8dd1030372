// Which application each process belongs to. docs/processes.md has the rules in words.
#pragma once

#include <cstdint>
#include <vector>

#include "platform/linux/KnownProcess.h"

namespace vel {

/// An application is known by its first process, its leader. Every process has one leader; a leader
/// is its own. Who leads goes on leading as long as it lives, unless the service manager puts it
/// into the unit of another application.
class Applications {
 public:
  explicit Applications(KnownProcesses& processes) : processes_(processes) {}

  /// Places every process that is not placed, and first undoes the places of those whose leader is
  /// in `ended`, which is sorted. Sets what is reported as their parents. A process's unit, and its
  /// parent's, must have been read if they are to count.
  ///
  /// A process that changes its application leaves what it has contributed behind, and begins with
  /// nothing in an application that was there before.
  void place(std::uint32_t reading, const std::vector<std::int32_t>& ended);

 private:
  void forget(const std::vector<std::int32_t>& ended);
  void placePending();
  void place(KnownProcess& process);
  [[nodiscard]] std::int32_t leaderOf(KnownProcess& process, const KnownProcess* parent);
  [[nodiscard]] std::int32_t leaderInUnit(const KnownProcess& process);
  [[nodiscard]] std::int32_t leaderOfOrphan(const KnownProcess& process);
  [[nodiscard]] std::int32_t jobOf(const KnownProcess& process);
  void move(KnownProcess& process, std::int32_t leader);
  void begin(KnownProcess& process) const;

  struct UnitLeader {
    std::uint64_t unit;
    std::int32_t pid;
  };

  KnownProcesses& processes_;
  std::vector<UnitLeader> unitLeaders_;
  std::vector<std::int32_t> disbanded_;  ///< who leads no more, though there
  std::vector<std::int32_t> pending_;    ///< kept for its storage only
  std::uint32_t reading_ = 0;
};

}  // namespace vel
