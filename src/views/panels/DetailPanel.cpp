#include "views/panels/DetailPanel.h"

#include "platform/Platform.h"
#include "platform/host/Broadcasts.h"
#include "text/ValueFormat.h"

namespace vel {

std::optional<DetailPanel::Outlets> DetailPanel::connect(Nib& nib, std::string_view panel,
                                                         const std::string& prefix) {
  // All are asked for before any is missed, so that the host hears of every one.
  auto* view = nib.outlet<View>(panel);
  auto* user = nib.outlet<TextField>(prefix + "UserCPULabel");
  auto* system = nib.outlet<TextField>(prefix + "SystemCPULabel");
  auto* idle = nib.outlet<TextField>(prefix + "IdleCPULabel");
  auto* niceCaption = nib.outlet<TextField>(prefix + "NiceCPUCaption");
  auto* nice = nib.outlet<TextField>(prefix + "NiceCPULabel");
  auto* uptime = nib.outlet<TextField>(prefix + "UptimeCPULabel");
  auto* graph = nib.outlet<VELGraphMultiple>(prefix + "CPUGraph");
  if (view == nullptr || user == nullptr || system == nullptr || idle == nullptr ||
      niceCaption == nullptr || nice == nullptr || uptime == nullptr || graph == nullptr) {
    return std::nullopt;
  }
  return Outlets{*view, *user, *system, *idle, *niceCaption, *nice, *uptime, *graph};
}

DetailPanel::DetailPanel(const Outlets& outlets, const Heights& heights, const Bundle& bundle)
    : notificationCenter_(Platform::current().notificationCenter),
      outlets_(outlets),
      heights_(heights),
      bundle_(bundle) {}

DetailPanel::~DetailPanel() {
  notificationCenter_.removeObserver(this);
}

void DetailPanel::awakeFromNib() {
  outlets_.cpuGraph.setMaxValue(100.0F);
  registerNotification();
}

void DetailPanel::updateView() {
  if (!view().isWindowVisible()) {
    return;
  }
  if (isCPUGraphShown_) {
    outlets_.cpuGraph.setNeedsDisplay();
  }
  static const CPUData nothing;
  const CPUData* record = CPUData_.get();
  updateFields(record == nullptr ? nothing : *record);
}

void DetailPanel::setCpuCoresInformation(const CpuCoresInformation& information) {
  if (cores_.setInformation(information)) {
    updateCoresDisplayed();
  }
}

// --- Settings ---

void DetailPanel::registerNotification() {
  using Handler = void (DetailPanel::*)(const Notification&);
  const auto observe = [this](std::string_view name, Handler handler) {
    notificationCenter_.addObserver(this, name, [this, handler](const Notification& notification) {
      (this->*handler)(notification);
    });
  };
  observe(broadcast::showGraph, &DetailPanel::showGraphDidChanged);
  observe(broadcast::coresDisplayed, &DetailPanel::menuBarCoresDisplayedDidChange);
}

void DetailPanel::showGraphDidChanged(const Notification& notification) {
  isCPUGraphShown_ = notification.integerValue() != 0;
  outlets_.cpuGraph.setHidden(!isCPUGraphShown_);
  view().setFrameSize(
      {view().frame().size.width, isCPUGraphShown_ ? heights_.graphShown : heights_.graphHidden});
}

void DetailPanel::menuBarCoresDisplayedDidChange(const Notification& notification) {
  cores_.setType(notification.integerValue());
  updateCoresDisplayed();
}

void DetailPanel::updateCoresDisplayed() {
  Platform::current().mainQueue.async([panel = weak_from_this()] {
    if (const auto self = panel.lock()) {
      if (const auto count = self->cores_.count()) {
        self->outlets_.cpuGraph.setNumberOfGraphs(*count);
      }
    }
  });
}

// --- Content ---

void DetailPanel::updateFields(const CPUData& record) {
  const auto showShare = [&record](TextField& field, Reading reading) {
    show(field, floatToPercentageString(record.number(reading), 1, Platform::current().locale));
  };
  showShare(outlets_.userCPULabel, Reading::userCPU);
  showShare(outlets_.systemCPULabel, Reading::systemCPU);
  showShare(outlets_.idleCPULabel, Reading::idleCPU);
  updateNice(record.number(Reading::niceCPU));
  show(outlets_.uptimeCPULabel,
       componentToTimeString(record.upTime().value_or(CalendarDifference{}), bundle_));
}

/// With it the shares add up to the whole.
void DetailPanel::updateNice(float share) {
  const Locale& locale = Platform::current().locale;
  const std::string text = floatToPercentageString(share, 1, locale);
  const bool hidden = text == floatToPercentageString(0.0F, 1, locale);
  for (TextField* field : {&outlets_.niceCPUCaption, &outlets_.niceCPULabel}) {
    if (field->isHidden() != hidden) {
      field->setHidden(hidden);
    }
  }
  show(outlets_.niceCPULabel, text);
}

void DetailPanel::show(TextField& field, std::string_view text) {
  if (field.stringValue() != text) {
    field.setStringValue(text);
  }
}

}  // namespace vel
