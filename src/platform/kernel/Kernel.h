// What the module asks of the machine's kernel.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vel {

/// One reading of every processor's cumulative tick counters. The processors of one core are
/// neighbours.
struct TickSample {
  enum State : std::uint8_t { user, system, idle, nice };
  static constexpr std::size_t kStates = 4;

  /// The identity of a processor whose counters the kernel does not give, as while it is offline.
  static constexpr std::int32_t kNoProcessor = -1;

  /// Four integers per processor, at 4i + State, that do not wrap where the machine's own do. One
  /// may step back, even below 0: what it gained between two samples is the difference in unsigned
  /// arithmetic, read as signed.
  std::vector<std::uint64_t> counters;

  /// Per processor, whose counters these are, or `kNoProcessor`. Counters of two samples can be
  /// compared only where the identities are equal: the order may change when processors come or go.
  std::vector<std::int32_t> processors;
};

struct ProcessorState {
  static constexpr std::int32_t kNoCore = -1;

  bool running = false;
  /// Of a running processor: those with the same number share a core. `kNoCore` where that is not
  /// known of any.
  std::int32_t core = kNoCore;
  /// Of a running processor, as in the sample of its ticks.
  std::int32_t identity = TickSample::kNoProcessor;
};

/// Tasks (processes) and threads of the whole system.
struct SystemLoad {
  std::int32_t tasks = 0;
  std::int32_t threads = 0;
};

/// A moment since 1970-01-01 00:00 UTC.
struct BootTime {
  std::int64_t seconds = 0;
  std::int32_t microseconds = 0;
};

/// A process as the kernel lists it.
struct ProcessRecord {
  /// Bytes of the longest command name.
  static constexpr std::size_t kNameSize = 16;

  std::int32_t pid = 0;
  /// 0 for none. 1, the first process, also of what a service manager has started in a unit of its
  /// own, as a desktop's applications are.
  std::int32_t parent = 0;
  std::int64_t startSeconds = 0;          ///< since 1970, the same as long as the process lives
  std::int8_t status = 0;                 ///< the kernel's code, above 0
  std::array<char, kNameSize> command{};  ///< any bytes but NUL, which fills the rest

  [[nodiscard]] std::string_view name() const {
    const std::string_view all(command.data(), command.size());
    return all.substr(0, all.find('\0'));
  }
};

/// What a process has used, its ended threads' CPU time included.
struct TaskFigures {
  std::uint64_t virtualBytes = 0;
  std::uint64_t residentBytes = 0;
  std::uint64_t userNanoseconds = 0;
  std::uint64_t systemNanoseconds = 0;
  std::int32_t threads = 0;
};

/// Every operation answers with a value; a reading that cannot be had is nothing, false or -1, and
/// nothing is thrown. Called from one thread at a time.
class Kernel {
 public:
  Kernel() = default;
  virtual ~Kernel() = default;
  Kernel(const Kernel&) = delete;
  Kernel& operator=(const Kernel&) = delete;

  /// Processors for which there are tick counters, offline ones included.
  virtual std::optional<std::uint32_t> processorCount() = 0;

  /// Physical cores with a processor online.
  virtual std::optional<std::uint32_t> physicalCoreCount() = 0;

  /// Processors online, as the latest `readTicks` or `processorCount` has found them.
  virtual std::optional<std::uint32_t> logicalProcessorCount() = 0;

  /// Overwrites `sample`, whose storage is kept from call to call. After false its content is of no
  /// use.
  virtual bool readTicks(TickSample& sample) = 0;

  /// The processors of the latest `readTicks`, in the same order, without reading anew what that
  /// has read. As there, storage is kept.
  virtual bool readProcessorStates(std::vector<ProcessorState>& states) = 0;

  virtual std::optional<SystemLoad> systemLoad() = 0;

  /// Over 1, 5 and 15 minutes. Returns how many were delivered, from the front, or -1.
  virtual int loadAverages(std::array<double, 3>& averages) = 0;

  virtual std::optional<BootTime> bootTime() = 0;

  /// Overwrites `records`, whose storage is kept, with every process that may be seen, in no
  /// particular order. False when they cannot be listed.
  virtual bool listProcesses(std::vector<ProcessRecord>& records) = 0;

  // Of a process in the latest list they answer what held then, of any other what holds now, and
  // nothing when there is no such process or it may not be read.

  virtual std::optional<ProcessRecord> process(std::int32_t pid) = 0;
  virtual std::optional<TaskFigures> taskFigures(std::int32_t pid) = 0;

  /// The name to show for a process in the latest list that counts as started by the first: its
  /// command's, whole where it is known to be longer than a record can hold; any bytes but NUL.
  /// Nothing when there is no such process.
  virtual std::optional<std::string> processName(std::int32_t pid) = 0;

  virtual std::int32_t ownPid() = 0;

  /// The file that the process runs, even if it has been replaced or deleted since; nothing where
  /// it may not be known.
  virtual std::optional<std::string> executablePath(std::int32_t pid) = 0;
};

}  // namespace vel
