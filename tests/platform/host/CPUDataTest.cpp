// The readings record and the broadcasts: their names, and what is there before it is written.
#include "platform/host/CPUData.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "platform/host/Broadcasts.h"

namespace vel::test {
namespace {

/// Every key with its value, as text.
class Collector : public CPUData::Visitor {
 public:
  void number(std::string_view key, float value) override {
    add(key, std::to_string(static_cast<int>(value)));
  }
  void duration(std::string_view key, const CalendarDifference& value) override {
    add(key, std::to_string(value.day) + " days");
  }
  void processes(std::string_view key, const std::vector<ProcessEntry>& value) override {
    add(key, value.at(0).name + value.at(0).pid + value.at(0).avgCpuTime);
  }
  void pids(std::string_view key, const std::vector<std::string>& value) override {
    add(key, value.at(0));
  }
  void add(std::string_view key, const std::string& value) {
    text += std::string(key) + "=" + value + " ";
  }
  std::string text;
};

TEST(CPUData, EveryKeyHasItsNameOnceItIsWritten) {
  CPUData data;
  Collector before;
  data.visit(before);
  EXPECT_EQ(before.text, "");
  EXPECT_EQ(data.number(Reading::userCPU), 0.0F);
  EXPECT_EQ(data.number(ProcessorReading::niceCPUPhy, 7), 0.0F);

  for (std::size_t i = 0; i < kReadings; ++i) {
    data.set(static_cast<Reading>(i), static_cast<float>(i));
  }
  for (std::size_t i = 0; i < kProcessorReadings; ++i) {  // indices below 12 stay absent
    data.set(static_cast<ProcessorReading>(i), 12, static_cast<float>(i));
  }
  data.setUpTime({0, 1, 2, 3});
  data.setTopMemProcess({{"a", "b", "c"}});
  data.setProcessesForNotification({"17"});
  Collector after;
  data.visit(after);
  EXPECT_EQ(after.text,
            "userCPU=0 systemCPU=1 idleCPU=2 niceCPU=3 tasksCount=4 threadsCount=5 loadAverage0=6 "
            "loadAverage1=7 loadAverage2=8 userCPUAll12=0 systemCPUAll12=1 idleCPUAll12=2 "
            "niceCPUAll12=3 userCPUPhy12=4 systemCPUPhy12=5 idleCPUPhy12=6 niceCPUPhy12=7 "
            "upTime=1 days topMemProcess=abc processesForNotification=17 ");
}

TEST(Broadcasts, HaveTheirNames) {
  using namespace broadcast;
  const std::vector<std::string_view> names = {needUpdateCoreInfo,
                                               top5Type,
                                               notificationThresholdDidChange,
                                               coresDisplayed,
                                               showGraph,
                                               iconStatusChanged,
                                               menuBarGaugeType,
                                               iconSubItemsChanged,
                                               gfxGPUStatusChanged};
  EXPECT_EQ(names, (std::vector<std::string_view>{
                       "VEL_CPU_NEED_UPDATE_COREINFO", "VEL_CPU_Top5Type",
                       "VEL_CPU_NotificationThresholdDidChange", "VEL_CPU_CoresDisplayed",
                       "VEL_CPU_ShowGraph", "VEL_CPU_IconStatusChanged", "VEL_CPU_MenuBarGaugeType",
                       "VEL_CPU_IconSubItemsChanged", "VEL_CPU_GFXGPUStatusChanged"}));
}

}  // namespace
}  // namespace vel::test
