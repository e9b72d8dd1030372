// The two panels of the module's own nib: their texts, the graph, and reports of other threads.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "platform/headless/HeadlessWidgets.h"
#include "platform/host/Broadcasts.h"
#include "support/ScriptedPlatform.h"
#include "views/panels/VELStatusbarCompactview.h"
#include "views/panels/VELStatusbarExpandedview.h"

namespace vel::test {
namespace {

using Texts = std::vector<std::string>;

const Texts kShares{"UserCPULabel", "SystemCPULabel", "IdleCPULabel", "UptimeCPULabel"};
const Texts kOthers{"tasksLabel", "threadsLabel", "loadAvgLabel", "loadAvgLabel2", "loadAvgLabel3"};

class DetailPanels : public testing::Test {
 protected:
  struct Panel {
    std::string prefix;
    double high;
    double low;
    std::shared_ptr<DetailPanel> panel;
    HeadlessView<View>& view;
    HeadlessGraphMultiple& graph;
  };

  DetailPanels() {
    for (const Panel& each : panels) {
      each.panel->cpuData().set(&record);
      each.panel->awakeFromNib();
      each.view.setWindowVisible(true);
    }
  }

  template <typename T>
  T& object(const std::string& name) {
    return machine.nibLoader.object<T>(name);
  }

  void post(std::string_view broadcast, std::int64_t value) {
    machine.notificationCenter.post(broadcast, value);
    machine.queue.drain();
  }

  Texts texts(const std::string& prefix, const Texts& fields) {
    Texts result;
    for (const auto& field : fields) {
      result.push_back(object<TextField>(prefix + field).stringValue());
    }
    return result;
  }

  /// Name, pid and share of every row, once the list is shown.
  Texts rows(std::vector<ProcessEntry> processes) {
    record.setTopMemProcess(std::move(processes));
    panels[1].panel->updateView();
    Texts result;
    for (const char row : std::string("12345")) {
      const auto& name = object<VELTextFieldKillApp>(std::string("Process") + row + "Label");
      result.push_back(name.stringValue() + ' ' + std::to_string(name.pid()) + ' ' +
                       texts("Process", {std::string(1, row) + "Value"})[0]);
    }
    return result;
  }

  ScriptedPlatform machine;
  CPUData record;
  std::unique_ptr<Nib> nib = machine.nibLoader.load(machine.bundle, "VELViewsController");
  Panel panels[2] = {{"compact", 114, 76, VELStatusbarCompactview::fromNib(*nib, machine.bundle),
                      object<HeadlessView<View>>("statusbarcompactview"),
                      object<HeadlessGraphMultiple>("compactCPUGraph")},
                     {"expanded", 314, 280, VELStatusbarExpandedview::fromNib(*nib, machine.bundle),
                      object<HeadlessView<View>>("statusbarExpandedview"),
                      object<HeadlessGraphMultiple>("expandedCPUGraph")}};
};

TEST_F(DetailPanels, ShowWhatTheRecordHolds) {
  // In the order of the enumeration, the nice share too.
  for (int i = 0;
       const float value : {0.123F, 0.05F, 0.827F, 0.5F, 312.0F, 1405.0F, 1.5F, 0.987F, 12.3456F}) {
    record.set(static_cast<Reading>(i++), value);
  }
  record.setUpTime({.month = 2, .day = 10, .hour = 23, .minute = 59});
  const Texts none{"0.0%", "0.0%", "0.0%", "-"};
  const Texts full{"12.3%", "5.0%", "82.7%", "2 months 10d 23h 59m"};
  const Texts zeros{"0", "0", "0.00", "0.00", "0.00"};
  const Texts counts{"312", "1405", "1.50", "0.99", "12.35"};
  const std::tuple<const CPUData*, bool, Texts, Texts> cases[] = {
      {nullptr, true, none, zeros}, {&record, false, none, zeros}, {&record, true, full, counts}};
  for (const auto& [data, visible, shares, others] : cases) {
    for (const Panel& each : panels) {
      each.panel->cpuData().set(data);
      each.view.setWindowVisible(visible);
      each.panel->updateView();
      EXPECT_EQ(texts(each.prefix, kShares), shares);
    }
    EXPECT_EQ(texts("", kOthers), others);
  }
  // A niced share has its place while it would not show as nothing.
  const std::tuple<float, bool, const char*> nices[] = {{0.0F, false, "0.0%"},
                                                        {0.0004F, false, "0.0%"},
                                                        {0.0006F, true, "0.1%"},
                                                        {1.0F, true, "100.0%"}};
  for (const auto& [share, shownAtAll, text] : nices) {
    record.set(Reading::niceCPU, share);
    for (const Panel& each : panels) {
      each.panel->updateView();
      EXPECT_EQ(texts(each.prefix, {"NiceCPULabel"}), Texts{text});
      for (const char* field : {"NiceCPULabel", "NiceCPUCaption"}) {
        EXPECT_EQ(object<TextField>(each.prefix + field).isHidden(), !shownAtAll);
      }
    }
  }
  // What is there already is not set again.
  const auto& user = object<HeadlessTextField>("compactUserCPULabel");
  const auto before = user.displayRequests();
  panels[0].panel->updateView();
  EXPECT_EQ(user.displayRequests(), before);
}

TEST_F(DetailPanels, KeepTheRowsThatAListDoesNotReach) {
  const Texts fresh(5, "- 0 -");
  panels[1].panel->updateView();  // before there is a list
  EXPECT_EQ(rows({}), fresh);
  const Texts five = rows({{"a", "11", "9%"},
                           {"b", "12", "8%"},
                           {"c", "x", "7%"},
                           {"%n<b>", "14", "6%"},
                           {"e", "4294967297", "5%"},
                           {"f", "16", "4%"}});
  EXPECT_EQ(five, (Texts{"a 11 9%", "b 12 8%", "c 0 7%", "%n<b> 14 6%", "e 4294967297 5%"}));
  const Texts mixed{"z 21 3%", "y 22 -", five[2], five[3], five[4]};
  EXPECT_EQ(rows({{"z", "21", "3%"}, {"y", "22", "-"}}), mixed);
  EXPECT_EQ(rows({}), mixed);
}

TEST_F(DetailPanels, MakeRoomForTheGraph) {
  for (const auto& [prefix, high, low, panel, view, graph] : panels) {
    SCOPED_TRACE(prefix);
    EXPECT_TRUE(view.frame().size.height == low && graph.isHidden());
    const double width = view.frame().size.width;
    view.setFrameOrigin({3, 4});
    for (const std::int64_t shown : {-1, 1, 0}) {
      post(broadcast::showGraph, shown);
      EXPECT_EQ(view.frame(), (Rect{{3, 4}, {width, shown != 0 ? high : low}}));
      EXPECT_EQ(graph.isHidden(), shown == 0);
      const auto before = graph.displayRequests();
      panel->updateView();
      EXPECT_EQ(graph.displayRequests(), before + (shown != 0 ? 1U : 0U));
    }
    // The room at the bottom is the graph's, all of it.
    const Rect place = graph.frame();
    EXPECT_EQ(place.origin.y + place.size.height, high - 12);
    for (const View* other : view.subviews()) {
      const Rect frame = other->frame();
      EXPECT_TRUE(other == &graph || frame.origin.y + frame.size.height <= place.origin.y);
    }
  }
}

TEST_F(DetailPanels, DrawAsManySeriesAsCoresAreToBeShown) {
  panels[1].graph.setNumberOfGraphs(7);
  machine.queue.drain();
  EXPECT_EQ(panels[1].graph.numberOfGraphs(), 1);  // at start-up, the expanded panel's only
  for (const Panel& each : panels) {
    SCOPED_TRACE(each.prefix);
    const auto seriesWith = [&](std::uint32_t logical, std::uint32_t physical) {
      each.panel->setCpuCoresInformation({.logicalcpu = logical, .physicalcpu = physical});
      machine.queue.drain();
      return each.graph.numberOfGraphs();
    };
    EXPECT_EQ(seriesWith(8, 4), 1);
    post(broadcast::coresDisplayed, 1);
    EXPECT_EQ(each.graph.numberOfGraphs(), 4);
    EXPECT_EQ(seriesWith(8, 2), 4);  // the same logical count is no change
    EXPECT_EQ(seriesWith(6, 0), 0);
    post(broadcast::coresDisplayed, 0);
  }
}

TEST_F(DetailPanels, LeaveNothingBehind) {
  post(broadcast::showGraph, 1);
  machine.notificationCenter.post(broadcast::coresDisplayed, 2);  // would be no series
  for (Panel& each : panels) {
    each.panel.reset();
  }
  machine.queue.drain();
  post(broadcast::showGraph, 0);
  for (const Panel& each : panels) {
    EXPECT_TRUE(!each.graph.isHidden() && each.graph.numberOfGraphs() == 1);
  }
}

}  // namespace
}  // namespace vel::test
