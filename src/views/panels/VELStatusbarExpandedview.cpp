#include "views/panels/VELStatusbarExpandedview.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/Platform.h"

namespace vel {
namespace {

/// 0 for what is no number.
std::int64_t integerValue(const std::string& text) {
  std::int64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

}  // namespace

std::shared_ptr<VELStatusbarExpandedview> VELStatusbarExpandedview::fromNib(Nib& nib,
                                                                            const Bundle& bundle) {
  const auto outlets = connect(nib, "statusbarExpandedview", "expanded");
  const auto expanded = connectExpanded(nib);
  return outlets && expanded
             ? std::make_shared<VELStatusbarExpandedview>(*outlets, *expanded, bundle)
             : nullptr;
}

std::optional<VELStatusbarExpandedview::ExpandedOutlets> VELStatusbarExpandedview::connectExpanded(
    Nib& nib) {
  bool whole = true;
  const auto connect = [&]<typename T>(T*& outlet, const std::string& name) {
    outlet = nib.outlet<T>(name);
    whole = whole && outlet != nullptr;
  };
  ExpandedOutlets outlets{};
  connect(outlets.tasksLabel, "tasksLabel");
  connect(outlets.threadsLabel, "threadsLabel");
  connect(outlets.loadAvgLabels[0], "loadAvgLabel");
  connect(outlets.loadAvgLabels[1], "loadAvgLabel2");
  connect(outlets.loadAvgLabels[2], "loadAvgLabel3");
  for (std::size_t i = 0; i < kProcessRows; ++i) {
    const std::string row = "Process" + std::to_string(i + 1);
    connect(outlets.procLabelFields[i], row + "Label");
    connect(outlets.procValueFields[i], row + "Value");
  }
  return whole ? std::optional(outlets) : std::nullopt;
}

VELStatusbarExpandedview::VELStatusbarExpandedview(const Outlets& outlets,
                                                   const ExpandedOutlets& expanded,
                                                   const Bundle& bundle)
    : DetailPanel(outlets, {.graphShown = 314.0, .graphHidden = 280.0}, bundle),
      expanded_(expanded) {}

void VELStatusbarExpandedview::awakeFromNib() {
  updateCoresDisplayed();
  DetailPanel::awakeFromNib();
}

void VELStatusbarExpandedview::updateFields(const CPUData& record) {
  DetailPanel::updateFields(record);
  const Locale& locale = Platform::current().locale;
  show(*expanded_.tasksLabel, locale.number(std::trunc(record.number(Reading::tasksCount)), 0));
  show(*expanded_.threadsLabel, locale.number(std::trunc(record.number(Reading::threadsCount)), 0));
  constexpr std::array kLoads = {Reading::loadAverage0, Reading::loadAverage1,
                                 Reading::loadAverage2};
  for (std::size_t i = 0; i < kLoads.size(); ++i) {
    show(*expanded_.loadAvgLabels[i], locale.number(record.number(kLoads[i]), 2));
  }
  if (const auto& processes = record.topMemProcess()) {
    updateProcesses(*processes);
  }
}

void VELStatusbarExpandedview::updateProcesses(const std::vector<ProcessEntry>& processes) {
  for (std::size_t i = 0; i < std::min(processes.size(), kProcessRows); ++i) {
    const ProcessEntry& process = processes[i];
    VELTextFieldKillApp& label = *expanded_.procLabelFields[i];
    show(label, process.name);
    label.setPID(integerValue(process.pid));
    show(*expanded_.procValueFields[i], process.avgCpuTime);
  }
}

}  // namespace vel
