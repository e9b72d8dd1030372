// A menu-bar item as its views have it.
#include "host/terminal/Item.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "platform/headless/HeadlessNib.h"
#include "platform/headless/HeadlessWidgets.h"

namespace vel::test {
namespace {

constexpr const char* kNib = R"(<ui><widget class='QWidget' name='item'>
  <widget class='VELMenuBarText' name='second'/>
  <widget class='QWidget' name='box'>
    <widget class='VELMenuBarText' name='first'/><widget class='VELGaugeViewMultiple' name='inBox'/>
  </widget>
  <widget class='QWidget' name='badge'/><widget class='VELColor' name='color'/>
  <widget class='VELModuleNameStatusBarView' name='name'/>
  <widget class='VELGaugeViewMultiple' name='gauges'/></widget></ui>)";

/// "name|text|gauges|badge": of each gauge the percentage, and "!" if it is busy.
std::string summary(const Item& item) {
  std::string text = item.name + "|" + item.text + "|";
  for (const auto& [share, busy] : item.gauges) {
    text += std::to_string(std::lround(share * 100.0F)) + (busy ? "! " : " ");
  }
  return text + "|" + item.badge;
}

TEST(Item, IsWhatItsViewsShow) {
  const auto hide = [](const char* name) {
    return [name](Nib& nib) { nib.outlet<View>(name)->setHidden(true); };
  };
  const std::vector<std::pair<std::function<void(Nib&)>, const char*>> cases = {
      {[](Nib&) {}, "CPU|5% MHz|0 50 71! |i"},
      {hide("item"), "|||"},
      {hide("box"), "CPU|MHz|50 71! |i"},
      {hide("name"), "|5% MHz|0 50 71! |i"},
      {hide("gauges"), "CPU|5% MHz|0 |i"},
      {hide("badge"), "CPU|5% MHz|0 50 71! |"},
      {[](Nib& nib) { nib.outlet<VELMenuBarText>("first")->setTextString(""); },
       "CPU|MHz|0 50 71! |i"},
      {[](Nib& nib) {
         nib.outlet<View>("box")->setFrameOrigin(Point{60, 0});
       },
       "CPU|MHz 5%|50 71! 0 |i"},
      {[](Nib& nib) {
         auto* gauges = nib.outlet<VELGaugeViewMultiple>("gauges");
         gauges->currentValueForGaugeAtIndex(-3.0F, 0);
         gauges->currentValueForGaugeAtIndex(104.0F, 1);
         gauges->innerColorForGaugeAtIndex(Color{1, 1, 1, 1}, 1);
         nib.outlet<VELGaugeViewMultiple>("inBox")->currentValueForGaugeAtIndex(NAN, 0);
       },
       "CPU|5% MHz|0 0 100 |i"},
  };
  for (const auto& [change, expected] : cases) {
    SCOPED_TRACE(expected);
    const auto nib = HeadlessNib::fromText(
        kNib, "N.ui", [](std::string_view key) { return std::string(key); },
        [](const std::string& problem) { FAIL() << problem; });
    nib->outlet<VELMenuBarText>("first")->setTextString("5%");
    nib->outlet<VELMenuBarText>("second")->setTextString("MHz");
    nib->outlet<View>("second")->setFrameOrigin({20, 0});
    nib->outlet<VELModuleNameStatusBarView>("name")->setThreeLetterName("CPU");
    auto* gauges = nib->outlet<VELGaugeViewMultiple>("gauges");
    gauges->setFrameOrigin({40, 0});
    gauges->setNumberOfGauges(2);
    gauges->currentValueForGaugeAtIndex(50.0F, 0);
    gauges->currentValueForGaugeAtIndex(71.0F, 1);
    gauges->innerColorForGaugeAtIndex(redColor.withAlpha(0.8), 1);
    nib->outlet<View>("badge")->setDidDraw(
        [](DrawingContext& context) { context.drawText("i", {}, {}); });
    change(*nib);
    Item item{"old", "old", {{1.0F, true}}, "old"};
    item.read(nib->outlet<View>("item"));
    EXPECT_EQ(summary(item), expected);
    item.read(nullptr);
    EXPECT_TRUE(item.isEmpty());
  }
}

}  // namespace
}  // namespace vel::test
