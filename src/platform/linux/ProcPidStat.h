// The text of /proc/<pid>/stat (man 5 proc; Documentation/filesystems/proc.rst, "Contents of the
// stat fields").
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace vel {

struct ProcPidStat {
  std::int32_t pid = 0;
  /// Any bytes but NUL, parentheses and newlines included; part of the text that was read. Longer
  /// than 15 bytes only for the kernel's own workers.
  std::string_view name;
  char state = '\0';  ///< a letter
  std::int32_t parent = 0;
  std::int32_t group = 0;
  std::int32_t session = 0;
  std::int32_t terminal = 0;  ///< the device's number, 0 for none
  std::uint32_t flags = 0;
  std::uint64_t userTicks = 0;    ///< ended threads included
  std::uint64_t systemTicks = 0;  ///< likewise
  /// User and system, of the children that have ended and been waited for, and of theirs.
  std::uint64_t childrenTicks = 0;
  std::int32_t threads = 0;
  std::uint64_t startTicks = 0;  ///< since the machine was started, suspended time included
  std::uint64_t virtualBytes = 0;
  std::uint64_t residentPages = 0;
  /// A bit for each signal from 1 on that is ignored or caught. 0 where the text ends before.
  std::uint64_t handledSignals = 0;

  /// It has ended and waits for its parent to notice. Its children have another parent already. A
  /// process whose first thread alone has ended is a zombie too, and keeps them.
  [[nodiscard]] bool hasEnded() const { return state == 'Z' && threads <= 1; }

  /// Whether it is a shell that gives each job a process group of its own: such a one must not stop
  /// when it changes the terminal's foreground group (man 3 tcsetpgrp), so it takes care of
  /// SIGTTOU. Being stopped from the keyboard is for its jobs, so it takes care of SIGTSTP as well.
  [[nodiscard]] bool controlsJobs() const;

  /// PF_KTHREAD of the kernel's include/linux/sched.h.
  [[nodiscard]] bool isKernelThread() const { return (flags & 0x0020'0000U) != 0; }
};

/// Nothing when a field is missing, malformed, cut short or out of range.
std::optional<ProcPidStat> parseProcPidStat(std::string_view text);

}  // namespace vel
