// The menu-bar item of the module's own nib: layout, gauges, colours, and reports of other threads.
#include "views/menubar/VELStatusbarview.h"

#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "platform/headless/HeadlessDrawing.h"
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

  /// What the badge draws.
  [[nodiscard]] std::vector<std::string> drawnBadge() const {
    HeadlessDrawing drawing;
    badge.draw(drawing);
    return drawing.operations();
  }

  void setLoad(float user, float system) {
    record.set(Reading::userCPU, user);
    record.set(Reading::systemCPU, system);
  }

  ScriptedPlatform machine;
  CPUData record;
  ObservedNibLoader& loader = machine.nibLoader;
  std::unique_ptr<Nib> nib = loader.load(machine.bundle, "VELViewsController");
  HeadlessColor& color = loader.object<HeadlessColor>("colorObject");
  HeadlessMenuBarText& text = loader.object<HeadlessMenuBarText>("percentageLabel");
  HeadlessModuleNameStatusBarView& name =
      loader.object<HeadlessModuleNameStatusBarView>("label3LettersContainer");
  HeadlessGaugeViewMultiple& gauge = loader.object<HeadlessGaugeViewMultiple>("gaugeView");
  HeadlessView<View>& badge = loader.object<HeadlessView<View>>("gfxGPUView");
  HeadlessView<View>& view = loader.object<HeadlessView<View>>("statusbarview");
  std::shared_ptr<VELStatusbarview> item = VELStatusbarview::fromNib(*nib, machine.bundle);
};

TEST_F(MenuBarItem, PlacesWhatIsShown) {
  EXPECT_EQ(view.frame().size, (Size{8, 22}));
  EXPECT_EQ(gauge.gaugeDefinedType(), 2);
  EXPECT_EQ(name.threeLetterName(), "CPU");
  EXPECT_EQ(name.colorObject(), &color);
  EXPECT_TRUE(badge.isHidden());
  // What is to be shown, whether with the badge; the places of text, name, gauge and badge, as far
  // as they are shown, and the width.
  const std::tuple<std::int64_t, std::int64_t, std::vector<double>, double> cases[] = {
      {6, 0, {4, 25}, 46}, {7, 1, {4, 34, 55, 73}, 90}, {0, 1, {5}, 22}, {0, 0, {}, 8}};
  for (const auto& [mask, gpu, expected, width] : cases) {
    SCOPED_TRACE(mask);
    post(broadcast::iconSubItemsChanged, mask);
    post(broadcast::gfxGPUStatusChanged, gpu);
    std::vector<double> places;
    for (const View* subItem : std::initializer_list<View*>{&text, &name, &gauge, &badge}) {
      const Rect frame = subItem->frame();
      EXPECT_EQ(frame.origin.y + frame.size.height / 2, 11);
      if (!subItem->isHidden()) {
        places.push_back(frame.origin.x);
      }
    }
    EXPECT_EQ(places, expected);
    EXPECT_EQ(view.frame().size, (Size{width, 22}));
  }
}

TEST_F(MenuBarItem, ShowsAsManyGaugesAsCoresAreToBeShown) {
  post(broadcast::iconSubItemsChanged, 2);
  const std::pair<std::int64_t, std::size_t> cases[] = {{2, 8}, {0, 1}, {-1, 1},
                                                        {1, 4}, {3, 4}, {1, 4}};
  for (const auto& [type, gauges] : cases) {
    SCOPED_TRACE(type);
    view.setFrameSize({});
    post(broadcast::coresDisplayed, type);
    EXPECT_EQ(gauge.gauges().size(), gauges);
    EXPECT_EQ(view.frame().size.width, 10 + 16 * static_cast<double>(gauges));
  }
  // Another logical count alone is a change.
  for (const auto& [logical, physical, gauges] : {std::tuple{8U, 2U, 4U}, {4U, 0U, 0U}}) {
    item->setCpuCoresInformation({.logicalcpu = logical, .physicalcpu = physical});
    machine.queue.drain();
    EXPECT_EQ(gauge.gauges().size(), gauges);
  }
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
    EXPECT_TRUE(text.alphaValue() == alpha && name.alphaValue() == alpha);
    EXPECT_TRUE(gauge.alphaValue() == 1.0 && badge.alphaValue() == 1.0);
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
}

TEST_F(MenuBarItem, RedrawsTheBadgeForAnotherGPUOrColourOnly) {
  post(broadcast::gfxGPUStatusChanged, 1);
  const auto before = badge.displayRequests();
  for (int i = 0; i < 2; ++i) {
    item->setGputype(1);
    EXPECT_EQ(badge.displayRequests(), before + i);
    machine.queue.drain();
    EXPECT_EQ(badge.displayRequests(), before + 1);
  }
  item->updateView();
  EXPECT_EQ(badge.displayRequests(), before + 1);
  for (const auto& [label, faint] : {std::pair{kGray, kGray}, {kFaint, kGray}}) {
    const auto requests = badge.displayRequests();
    color.set(label, faint, 0);
    EXPECT_EQ(badge.displayRequests(), requests + 1);
  }
}

TEST_F(MenuBarItem, DrawsTheBadgeInHalfPoints) {
  for (const auto& [type, letter] : {std::pair{0, "i"}, {1, "d"}, {-2, "d"}}) {
    item->setGputype(type);
    machine.queue.drain();
    EXPECT_EQ(drawnBadge(),
              (std::vector<std::string>{
                  "save", "translate 0.5 4.5", "scale 0.5 0.5",
                  "fill 1 1 20 24, radii 2 2, 0.5 0.5 0.5 0.2", "save", "clip 1 1 20 24",
                  std::string("text 1 -1 20 30, size 24, 0.5 0.5 0.5 1, center: ") + letter,
                  "restore", "restore"}));
  }
}

TEST_F(MenuBarItem, LeavesNothingBehind) {
  HeadlessDrawing drawing;
  view.draw(drawing);
  machine.notificationCenter.post(broadcast::coresDisplayed, 2);
  item.reset();
  machine.queue.drain();
  view.draw(drawing);
  EXPECT_EQ(drawnBadge(), std::vector<std::string>());
  color.set(Color{1, 1, 1}, Color{1, 1, 1}, 1);
  EXPECT_EQ(color.refreshes(view), 1);
  EXPECT_EQ(gauge.gauges().size(), 1U);
  EXPECT_EQ(gauge.outerColor().get(), kFaint);
}

}  // namespace
}  // namespace vel::test
