// The record of current readings: the model writes it, every view and, read-only, the host read it.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/foundation/GregorianCalendar.h"

namespace vel {

/// The readings of the whole machine. Shares are fractions from 0 to 1.
enum class Reading : std::uint8_t {
  userCPU,
  systemCPU,
  idleCPU,
  niceCPU,
  tasksCount,
  threadsCount,
  loadAverage0,  ///< over 1 minute
  loadAverage1,  ///< over 5 minutes
  loadAverage2,  ///< over 15 minutes
};
inline constexpr std::size_t kReadings = static_cast<std::size_t>(Reading::loadAverage2) + 1;

/// The readings that exist once per processor: "All" per running logical processor, "Phy" per
/// physical core.
enum class ProcessorReading : std::uint8_t {
  userCPUAll,
  systemCPUAll,
  idleCPUAll,
  niceCPUAll,
  userCPUPhy,
  systemCPUPhy,
  idleCPUPhy,
  niceCPUPhy,
};
inline constexpr std::size_t kProcessorReadings =
    static_cast<std::size_t>(ProcessorReading::niceCPUPhy) + 1;

/// The record's keys.
std::string_view keyOf(Reading reading);
std::string keyOf(ProcessorReading reading, std::uint32_t index);

inline constexpr std::string_view kUpTimeKey = "upTime";
inline constexpr std::string_view kTopMemProcessKey = "topMemProcess";
inline constexpr std::string_view kProcessesForNotificationKey = "processesForNotification";

// "topMemProcess" ranks by CPU, not memory, and a row's "avg cpu time" is in one of the two modes
// the current share: the names are older than the ranking.

/// A row of "topMemProcess". Every text is there; what is not known is "-". A name is a stranger's
/// text: any bytes but NUL.
struct ProcessEntry {
  static constexpr std::string_view kNameKey = "name";
  static constexpr std::string_view kPidKey = "pid";
  static constexpr std::string_view kAvgCpuTimeKey = "avg cpu time";

  std::string name;
  std::string pid;             ///< decimal
  std::string avgCpuTime;      ///< percent of one core, as it is shown
  float share = 0.0F;          ///< the same as a number: 1 is one core
  std::int32_t processes = 0;  ///< in the row, the one that it is named after included
};

/// The shape of "cpuCoresInformation".
struct CpuCoresInformation {
  std::uint32_t logicalcpu = 0;
  std::uint32_t physicalcpu = 0;

  bool operator==(const CpuCoresInformation&) const = default;
};

/// A key appears when it is first written and is never removed; a number read from a missing key is
/// 0, a list is empty. Not synchronised: the model writes while it updates, the views read while
/// they do, and the one follows the other.
class CPUData {
 public:
  /// Receives every key that is there, once, in the order of the enumerations.
  class Visitor {
   public:
    Visitor() = default;
    virtual ~Visitor() = default;
    Visitor(const Visitor&) = delete;
    Visitor& operator=(const Visitor&) = delete;

    virtual void number(std::string_view key, float value) = 0;
    virtual void duration(std::string_view key, const CalendarDifference& value) = 0;
    virtual void processes(std::string_view key, const std::vector<ProcessEntry>& value) = 0;
    virtual void pids(std::string_view key, const std::vector<std::string>& value) = 0;
  };

  CPUData() = default;
  CPUData(const CPUData&) = delete;
  CPUData& operator=(const CPUData&) = delete;

  void set(Reading reading, float value) { numbers_[static_cast<std::size_t>(reading)] = value; }
  void set(ProcessorReading reading, std::uint32_t index, float value);
  void setUpTime(const CalendarDifference& value) { upTime_ = value; }
  void setTopMemProcess(std::vector<ProcessEntry> value) { topMemProcess_ = std::move(value); }
  void setProcessesForNotification(std::vector<std::string> value) {
    processesForNotification_ = std::move(value);
  }

  [[nodiscard]] std::optional<float> find(Reading reading) const {
    return numbers_[static_cast<std::size_t>(reading)];
  }
  [[nodiscard]] std::optional<float> find(ProcessorReading reading, std::uint32_t index) const;
  [[nodiscard]] float number(Reading reading) const { return find(reading).value_or(0.0F); }
  [[nodiscard]] float number(ProcessorReading reading, std::uint32_t index) const {
    return find(reading, index).value_or(0.0F);
  }
  [[nodiscard]] const std::optional<CalendarDifference>& upTime() const { return upTime_; }
  [[nodiscard]] const std::optional<std::vector<ProcessEntry>>& topMemProcess() const {
    return topMemProcess_;
  }
  [[nodiscard]] const std::optional<std::vector<std::string>>& processesForNotification() const {
    return processesForNotification_;
  }

  void visit(Visitor& visitor) const;

 private:
  std::array<std::optional<float>, kReadings> numbers_{};
  /// Kept from the first write on, so that a refresh allocates nothing.
  std::array<std::vector<std::optional<float>>, kProcessorReadings> processorNumbers_{};
  std::optional<CalendarDifference> upTime_;
  std::optional<std::vector<ProcessEntry>> topMemProcess_;
  std::optional<std::vector<std::string>> processesForNotification_;
};

}  // namespace vel
