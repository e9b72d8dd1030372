// The menu-bar item: the percentage, the module's name, the gauges and the GPU badge in one row.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/Property.h"
#include "platform/host/CPUData.h"
#include "platform/host/VELColor.h"
#include "platform/host/VELGaugeViewMultiple.h"
#include "platform/host/VELMenuBarText.h"
#include "platform/host/VELModuleNameStatusBarView.h"
#include "platform/windowing/Nib.h"
#include "platform/windowing/View.h"
#include "views/cores/DisplayedCores.h"
#include "views/menubar/VELMenuBarGFXGPU.h"

namespace vel {

/// Settings reach it as broadcasts only. Belongs to the main thread, but for what says otherwise.
class VELStatusbarview : public std::enable_shared_from_this<VELStatusbarview> {
 public:
  struct Outlets {
    View& statusbarview;
    VELColor& colorObject;
    VELGaugeViewMultiple& gaugeView;
    VELMenuBarText& percentageLabel;
    VELModuleNameStatusBarView& label3LettersContainer;
    View& gfxGPUView;
  };

  /// The item of a nib, not yet awake; null when the nib lacks one of its outlets. Nib and bundle
  /// outlive it.
  static std::shared_ptr<VELStatusbarview> fromNib(Nib& nib, const Bundle& bundle);

  VELStatusbarview(const Outlets& outlets, const Bundle& bundle);
  ~VELStatusbarview();
  VELStatusbarview(const VELStatusbarview&) = delete;
  VELStatusbarview& operator=(const VELStatusbarview&) = delete;

  /// Once, before anything else.
  void awakeFromNib();

  [[nodiscard]] View& view() const { return view_; }
  [[nodiscard]] Property<const CPUData*>& cpuData() { return CPUData_; }

  /// Shows what the record holds; nothing while the item is hidden.
  void updateView();

  /// On any thread.
  void setCpuCoresInformation(const CpuCoresInformation& information);
  /// On any thread. 0 integrated, anything else discrete.
  void setGputype(std::int64_t type);

 private:
  void registerNotification();
  void iconStatusDidChanged(const Notification& notification);
  void menuBarGaugeDidChange(const Notification& notification);
  void iconSubItemsDidChanged(const Notification& notification);
  void menuBarCoresDisplayedDidChange(const Notification& notification);  ///< on any thread
  void gfxGPUStatusDidChanged(const Notification& notification);

  void updateCoresDisplayed();
  void updateFields();
  void updateCPUBox();
  void updateGaugeColor();
  void resizeView();
  [[nodiscard]] bool shows(std::int64_t item) const;

  /// Later, on the main thread, unless the item is gone by then.
  void onMainQueue(void (VELStatusbarview::*work)());
  void applyCoresDisplayed();
  void applyGputype();

  /// Kept: the item may go with its controller after the platform was uninstalled.
  NotificationCenter& notificationCenter_;
  View& view_;
  VELColor& colorObject_;
  VELGaugeViewMultiple& gaugeView_;
  VELMenuBarText& percentageLabel_;
  VELModuleNameStatusBarView& label3LettersContainer_;
  VELMenuBarGFXGPU gfxGPUView_;
  const Bundle& bundle_;

  std::int32_t iconstatus_ = 0;  ///< not 0: the percentage has a text
  std::int32_t iconsSubItemsGeneral_ = 0;
  bool isgfxGPUUsed_ = false;
  DisplayedCores cores_;
  std::atomic<std::int64_t> gputype_ = 0;
  Property<const CPUData*> CPUData_;
  /// Bound to the colour of a gauge at normal load, so that another appearance of the menu bar
  /// shows at once.
  Property<Color> dummyColor_{Color{}, [this](const Color&) { updateGaugeColor(); }};
};

}  // namespace vel
