// The menu-bar item of the module's own nib: layout, gauges, colours, and reports of other threads.
#include "views/menubar/VELStatusbarview.h"

#include <gtest/gtest.h>

#include <vector>

#include "platform/headless/HeadlessWidgets.h"
#include "platform/host/Broadcasts.h"
#include "support/ScriptedPlatform.h"

namespace vel::test {
namespace {

constexpr Color kGray{0.5, 0.5, 0.5};
constexpr Color kFaint{0.5, 0.5, 0.5, 0.2};
constexpr Color kLoaded{1.0, 0.0, 0.0, 0.8};

class MenuBarItem : public testing::Test {
 protected:
  MenuBarItem() {
    color.set(kGray, kFaint, 0);
    item->cpuData().set(&record);
    item->awakeFromNib();
    text.setWidthOfText([](std::string_view) { return 30.0; });
    name.setWidthOfText([](std::string_view) { return 20.0; });
    item->setCpuCoresInformation({.logicalcpu = 8, .physicalcpu = 4});
    machine.queue.drain();
  }

  void post(std::string_view broadcast, std::int64_t value) {
    machine.notificationCenter.post(broadcast, value);
    machine.queue.drain();
  }

  void setLoad(float user, float system) {
    record.set(Reading::userCPU, user);
    record.set(Reading::systemCPU, system);
  }

  template <typename T>
  T& object(std::string_view objectName) {
    return machine.nibLoader.object<T>(objectName);
  }

  ScriptedPlatform machine;
  CPUData record;
  std::unique_ptr<Nib> nib = machine.nibLoader.load(machine.bundle, "VELViewsController");
  HeadlessColor& color = object<HeadlessColor>("colorObject");
  HeadlessMenuBarText& text = object<HeadlessMenuBarText>("percentageLabel");
  HeadlessModuleNameStatusBarView& name =
      object<HeadlessModuleNameStatusBarView>("label3LettersContainer");
  HeadlessGaugeViewMultiple& gauge = object<HeadlessGaugeViewMultiple>("gaugeView");
  HeadlessView<View>& badge = object<HeadlessView<View>>("gfxGPUView");
  HeadlessView<View>& view = object<HeadlessView<View>>("statusbarview");
  std::shared_ptr<VELStatusbarview> item = VELStatusbarview::fromNib(*nib, machine.bundle);
};

TEST_F(MenuBarItem, PlacesWhatIsShown) {
  EXPECT_EQ(view.frame().size, (Size{8, 22}));
  EXPECT_EQ(gauge.gaugeDefinedType(), 2);
  EXPECT_EQ(name.threeLetterName(), "CPU");
  EXPECT_EQ(name.colorObject(), &color);
  EXPECT_TRUE(badge.isHidden());
  struct Case {
    std::int64_t mask;
    std::int64_t gpu;
    std::vector<double> places;  ///< of those that are shown: text, name, gauge, badge
    double width;
  };
  const Case cases[] = {{1, 0, {4}, 38},
                        {6, 0, {4, 25}, 46},
                        {7, 1, {4, 34, 55, 73}, 90},
                        {0, 1, {5}, 22},
                        {0, 0, {}, 8}};
  for (const auto& row : cases) {
    SCOPED_TRACE(row.mask);
    post(broadcast::gfxGPUStatusChanged, row.gpu);
    post(broadcast::iconSubItemsChanged, row.mask);
    std::vector<double> places;
    for (const View* subItem :
         {static_cast<const View*>(&text), static_cast<const View*>(&name),
          static_cast<const View*>(&gauge), static_cast<const View*>(&badge)}) {
      const Rect frame = subItem->frame();
      EXPECT_EQ(frame.origin.y + frame.size.height / 2, 11);
      if (!subItem->isHidden()) {
        places.push_back(frame.origin.x);
      }
    }
    EXPECT_EQ(places, row.places);
    EXPECT_EQ(view.frame().size, (Size{row.width, 22}));
  }
}

TEST_F(MenuBarItem, ShowsAsManyGaugesAsCoresAreToBeShown) {
  post(broadcast::iconSubItemsChanged, 2);
  const std::pair<std::int64_t, std::size_t> cases[] = {{2, 8}, {1, 4}, {3, 4}, {0, 1}, {-1, 1}};
  for (const auto& [type, gauges] : cases) {
    SCOPED_TRACE(type);
    view.setFrameSize({});
    post(broadcast::coresDisplayed, type);
    EXPECT_EQ(gauge.gauges().size(), gauges);
    EXPECT_EQ(view.frame().size.width, 10 + 16 * static_cast<double>(gauges));
  }
  post(broadcast::coresDisplayed, 1);
  item->setCpuCoresInformation({.logicalcpu = 8, .physicalcpu = 2});
  machine.queue.drain();
  EXPECT_EQ(gauge.gauges().size(), 4U);  // the logical count alone decides
  item->setCpuCoresInformation({.logicalcpu = 4, .physicalcpu = 0});
  machine.queue.drain();
  EXPECT_EQ(gauge.gauges().size(), 0U);
  view.setHidden(true);
  view.setFrameSize({});
  post(broadcast::menuBarGaugeType, 0);
  EXPECT_EQ(gauge.gaugeDefinedType(), 1);
  EXPECT_EQ(view.frame().size.width, 10);  // a style may have another width
}

TEST_F(MenuBarItem, ColoursEveryGaugeByItsOwnLoad) {
  EXPECT_EQ(gauge.outerColor().get(), kFaint);
  using Gauge = VELGaugeViewMultiple::Gauge;
  for (const auto& [user, system, expected] :
       {std::tuple{0.5F, 0.25F, Gauge{75.0F, kLoaded}},
        {0.35F, 0.35F, Gauge{70.0F, kGray}},
        {0.70000005F, 0.0F, Gauge{70.00001F, kLoaded}}}) {  // the next number there is
    setLoad(user, system);
    post(broadcast::menuBarGaugeType, 1);
    EXPECT_EQ(gauge.gauges(), std::vector{expected});
  }

  record.set(ProcessorReading::userCPUAll, 3, 0.75F);
  record.set(ProcessorReading::systemCPUAll, 3, 0.125F);
  record.set(ProcessorReading::systemCPUPhy, 1, 1.0F);
  for (const auto& [type, loaded] : {std::pair{2, Gauge{87.5F, kLoaded}}, {1, {100.0F, kLoaded}}}) {
    SCOPED_TRACE(type);
    post(broadcast::coresDisplayed, type);
    item->updateView();
    std::vector<Gauge> expected(type == 2 ? 8 : 4, Gauge{0.0F, kGray});
    expected[type == 2 ? 3 : 1] = loaded;
    EXPECT_EQ(gauge.gauges(), expected);
  }

  // Another appearance shows at once.
  color.set(Color{1, 1, 1}, kFaint, 1);
  EXPECT_EQ(gauge.gauges()[0].innerColor, (Color{1, 1, 1}));
  EXPECT_EQ(gauge.gauges()[1].innerColor, kLoaded);
  for (const auto& [style, alpha] : {std::pair{2, 0.95F}, {0, 1.0F}}) {
    color.set(Color{0, 0, style / 4.0}, kFaint, style);
    EXPECT_EQ(text.alphaValue(), alpha);
    EXPECT_EQ(name.alphaValue(), alpha);
    EXPECT_EQ(gauge.alphaValue(), 1.0);
    EXPECT_EQ(badge.alphaValue(), 1.0);
  }
}

TEST_F(MenuBarItem, HasAPercentageOnlyInItsDisplayMode) {
  text.setHidden(true);
  post(broadcast::iconStatusChanged, 2);  // before the first sample
  EXPECT_FALSE(text.isHidden());
  setLoad(0.75F, 0.125F);
  for (const auto& [hidden, shown] : {std::pair{true, "0%"}, {false, "88%"}}) {
    view.setHidden(hidden);
    item->updateView();
    EXPECT_EQ(text.stringValue(), shown);
  }
  post(broadcast::iconStatusChanged, 0);
  EXPECT_EQ(text.stringValue(), "");
  text.setTextString("88%");
  item->updateView();
  EXPECT_EQ(text.stringValue(), "");
}

TEST_F(MenuBarItem, RedrawsTheBadgeForAnotherGPUOrColourOnly) {
  post(broadcast::gfxGPUStatusChanged, 1);
  EXPECT_EQ(view.frame().size.width, 22);
  const int before = badge.displayRequests();
  for (int i = 0; i < 2; ++i) {
    item->setGputype(1);
    EXPECT_EQ(badge.displayRequests(), before + i);
    machine.queue.drain();
    EXPECT_EQ(badge.displayRequests(), before + 1);
  }
  color.set(kGray, kGray, 0);
  EXPECT_EQ(badge.displayRequests(), before + 2);
  color.set(kFaint, kGray, 0);
  EXPECT_EQ(badge.displayRequests(), before + 3);
}

TEST_F(MenuBarItem, LeavesNothingBehind) {
  view.draw();
  machine.notificationCenter.post(broadcast::coresDisplayed, 2);
  item.reset();
  machine.queue.drain();
  view.draw();
  color.set(Color{1, 1, 1}, Color{1, 1, 1}, 1);
  EXPECT_EQ(color.refreshes(view), 1);
  EXPECT_EQ(gauge.gauges().size(), 1U);
  EXPECT_EQ(gauge.outerColor().get(), kFaint);
}

}  // namespace
}  // namespace vel::test
