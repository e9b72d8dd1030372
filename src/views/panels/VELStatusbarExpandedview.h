// The expanded panel: what the compact one shows, the counts, the load averages and the processes
// that use the processor most.
#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <optional>

#include "platform/host/VELTextFieldKillApp.h"
#include "views/panels/DetailPanel.h"

namespace vel {

class VELStatusbarExpandedview : public DetailPanel {
 public:
  static constexpr std::size_t kProcessRows = 5;

  /// None is null.
  struct ExpandedOutlets {
    TextField* tasksLabel;
    TextField* threadsLabel;
    std::array<TextField*, 3> loadAvgLabels;  ///< over 1, 5 and 15 minutes
    std::array<VELTextFieldKillApp*, kProcessRows> procLabelFields;
    std::array<TextField*, kProcessRows> procValueFields;
  };

  /// The panel of a nib, not yet awake; null when the nib lacks one of its outlets. Nib and bundle
  /// outlive it.
  static std::shared_ptr<VELStatusbarExpandedview> fromNib(Nib& nib, const Bundle& bundle);

  VELStatusbarExpandedview(const Outlets& outlets, const ExpandedOutlets& expanded,
                           const Bundle& bundle);

  void awakeFromNib() override;

 protected:
  void updateFields(const CPUData& record) override;

 private:
  static std::optional<ExpandedOutlets> connectExpanded(Nib& nib);
  /// A row without a process of its own keeps what it shows.
  void updateProcesses(const std::vector<ProcessEntry>& processes);

  ExpandedOutlets expanded_;
};

}  // namespace vel
