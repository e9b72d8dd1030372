#include "views/menubar/VELStatusbarview.h"

#include <string>

#include "platform/Platform.h"
#include "platform/host/Broadcasts.h"
#include "text/Localisation.h"
#include "text/ValueFormat.h"
#include "views/menubar/SubItems.h"

namespace vel {
namespace {

constexpr double kRedThreshold = 0.7;
constexpr Color kRed = redColor.withAlpha(0.8);
constexpr float kDimmed = 0.95F;

void moveViewToPoint(View& view, const Point& point) {
  if (view.frame().origin != point) {
    view.setFrameOrigin(point);
  }
}

void resizeViewToSize(View& view, const Size& size) {
  if (view.frame().size != size) {
    view.setFrameSize(size);
  }
}

/// Places a view at `x`, as high as it is; returns where it ends.
float place(View& view, float x) {
  const Rect frame = view.frame();
  moveViewToPoint(view, {x, frame.origin.y});
  return x + static_cast<float>(frame.size.width);
}

}  // namespace

std::shared_ptr<VELStatusbarview> VELStatusbarview::fromNib(Nib& nib, const Bundle& bundle) {
  // All are asked for before any is missed, so that the host hears of every one.
  auto* view = nib.outlet<View>("statusbarview");
  auto* color = nib.outlet<VELColor>("colorObject");
  auto* gauge = nib.outlet<VELGaugeViewMultiple>("gaugeView");
  auto* percentage = nib.outlet<VELMenuBarText>("percentageLabel");
  auto* name = nib.outlet<VELModuleNameStatusBarView>("label3LettersContainer");
  auto* badge = nib.outlet<View>("gfxGPUView");
  if (view == nullptr || color == nullptr || gauge == nullptr || percentage == nullptr ||
      name == nullptr || badge == nullptr) {
    return nullptr;
  }
  return std::make_shared<VELStatusbarview>(
      Outlets{*view, *color, *gauge, *percentage, *name, *badge}, bundle);
}

VELStatusbarview::VELStatusbarview(const Outlets& outlets, const Bundle& bundle)
    : notificationCenter_(Platform::current().notificationCenter),
      view_(outlets.statusbarview),
      colorObject_(outlets.colorObject),
      gaugeView_(outlets.gaugeView),
      percentageLabel_(outlets.percentageLabel),
      label3LettersContainer_(outlets.label3LettersContainer),
      gfxGPUView_(outlets.gfxGPUView),
      bundle_(bundle) {}

VELStatusbarview::~VELStatusbarview() {
  notificationCenter_.removeObserver(this);
  gaugeView_.outerColor().unbind();
  view_.setDidDraw({});
}

void VELStatusbarview::awakeFromNib() {
  updateCoresDisplayed();
  gaugeView_.outerColor().bind(colorObject_.statusQuarternaryLabelColor());
  gfxGPUView_.outerColor().bind(colorObject_.statusQuarternaryLabelColor());
  dummyColor_.bind(colorObject_.statusLabelColor());
  updateGaugeColor();  // The binding has told only of a colour other than the initial one.
  label3LettersContainer_.setColorObject(&colorObject_);
  label3LettersContainer_.setThreeLetterName(VELLoc(bundle_, "cpu"));
  gaugeView_.setGaugeDefinedType(2);
  gfxGPUView_.view().setHidden(true);
  isgfxGPUUsed_ = false;
  view_.setDidDraw([this](DrawingContext&) { colorObject_.refreshColorForView(view_); });
  registerNotification();
}

void VELStatusbarview::updateView() {
  if (view_.isHidden()) {
    return;
  }
  updateFields();
  updateCPUBox();
  if (!gfxGPUView_.view().isHidden()) {
    applyGputype();
  }
}

void VELStatusbarview::setCpuCoresInformation(const CpuCoresInformation& information) {
  if (cores_.setInformation(information)) {
    updateCoresDisplayed();
  }
}

void VELStatusbarview::setGputype(std::int64_t type) {
  gputype_ = type;
  onMainQueue(&VELStatusbarview::applyGputype);
}

// --- Settings ---

void VELStatusbarview::registerNotification() {
  using Handler = void (VELStatusbarview::*)(const Notification&);
  const auto observe = [this](std::string_view name, Handler handler) {
    notificationCenter_.addObserver(this, name, [this, handler](const Notification& notification) {
      (this->*handler)(notification);
    });
  };
  observe(broadcast::iconStatusChanged, &VELStatusbarview::iconStatusDidChanged);
  observe(broadcast::menuBarGaugeType, &VELStatusbarview::menuBarGaugeDidChange);
  observe(broadcast::iconSubItemsChanged, &VELStatusbarview::iconSubItemsDidChanged);
  observe(broadcast::coresDisplayed, &VELStatusbarview::menuBarCoresDisplayedDidChange);
  observe(broadcast::gfxGPUStatusChanged, &VELStatusbarview::gfxGPUStatusDidChanged);
}

void VELStatusbarview::iconStatusDidChanged(const Notification& notification) {
  iconstatus_ = static_cast<std::int32_t>(notification.integerValue());
  updateFields();
}

void VELStatusbarview::menuBarGaugeDidChange(const Notification& notification) {
  gaugeView_.setGaugeDefinedType(notification.integerValue() + 1);
  updateView();
  resizeView();
}

void VELStatusbarview::iconSubItemsDidChanged(const Notification& notification) {
  iconsSubItemsGeneral_ = static_cast<std::int32_t>(notification.integerValue());
  percentageLabel_.setHidden(!shows(subItem::percentage));
  gaugeView_.setHidden(!shows(subItem::gauge));
  label3LettersContainer_.setHidden(!shows(subItem::moduleName));
  updateFields();
}

void VELStatusbarview::menuBarCoresDisplayedDidChange(const Notification& notification) {
  cores_.setType(notification.integerValue());
  updateCoresDisplayed();
}

void VELStatusbarview::gfxGPUStatusDidChanged(const Notification& notification) {
  isgfxGPUUsed_ = notification.integerValue() != 0;
  applyGputype();  // It may have come just now, and the badge is about to be seen.
  gfxGPUView_.view().setHidden(!isgfxGPUUsed_);
  resizeView();
}

// --- Content ---

void VELStatusbarview::updateFields() {
  if (iconstatus_ != 0) {
    const CPUData* record = CPUData_.get();
    const float load = record == nullptr
                           ? 0.0F
                           : record->number(Reading::userCPU) + record->number(Reading::systemCPU);
    percentageLabel_.setHidden(false);
    const std::string text = floatToPercentageString(load, 0, Platform::current().locale);
    if (text != percentageLabel_.stringValue()) {
      percentageLabel_.setTextString(text);
    }
  } else {
    percentageLabel_.setTextString("");
  }
  resizeView();
}

void VELStatusbarview::updateCPUBox() {
  cores_.forEachLoad(CPUData_.get(), [this](float load, std::int64_t index) {
    gaugeView_.currentValueForGaugeAtIndex(load * 100.0F, index);
  });
  updateGaugeColor();
}

void VELStatusbarview::updateGaugeColor() {
  const double alpha = colorObject_.statusItemBackgroundStyle() != 0 ? kDimmed : 1.0;
  percentageLabel_.setAlphaValue(alpha);
  label3LettersContainer_.setAlphaValue(alpha);
  const Color normal = colorObject_.statusLabelColor().get();
  // Setting it draws the badge, and this comes with every refresh.
  if (normal != gfxGPUView_.innerColor()) {
    gfxGPUView_.setInnerColor(normal);
  }
  cores_.forEachLoad(CPUData_.get(), [&](float load, std::int64_t index) {
    // In double precision: the 0.7F nearest to the threshold is a little less than it.
    const bool isHigh = static_cast<double>(load) > kRedThreshold;
    gaugeView_.innerColorForGaugeAtIndex(isHigh ? kRed : normal, index);
  });
}

// --- Layout ---

bool VELStatusbarview::shows(std::int64_t item) const {
  return (iconsSubItemsGeneral_ & item) != 0;
}

void VELStatusbarview::resizeView() {
  constexpr float kMargin = 4.0F;
  constexpr float kGap = 1.0F;
  float x = kMargin;
  if (shows(subItem::percentage)) {
    x = place(percentageLabel_, x);
  }
  if (shows(subItem::moduleName)) {
    x = place(label3LettersContainer_, x);
  }
  if (shows(subItem::gauge)) {
    x = place(gaugeView_, x + kGap) + kGap;
  }
  if (isgfxGPUUsed_) {
    x = place(gfxGPUView_.view(), x + kGap) + kGap;
  }
  resizeViewToSize(view_, {x + kMargin, view_.frame().size.height});
}

// --- What another thread may report ---

void VELStatusbarview::onMainQueue(void (VELStatusbarview::*work)()) {
  Platform::current().mainQueue.async([item = weak_from_this(), work] {
    if (const auto self = item.lock()) {
      (*self.*work)();
    }
  });
}

void VELStatusbarview::updateCoresDisplayed() {
  onMainQueue(&VELStatusbarview::applyCoresDisplayed);
}

void VELStatusbarview::applyCoresDisplayed() {
  if (const auto count = cores_.count()) {
    gaugeView_.setNumberOfGauges(*count);
  }
  resizeView();
}

void VELStatusbarview::applyGputype() {
  gfxGPUView_.setGputype(gputype_);
}

}  // namespace vel
