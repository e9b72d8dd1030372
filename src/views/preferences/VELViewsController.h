// The view controller of the menu-bar application: holds its views, keeps the display settings in
// the host's store and broadcasts them.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "alerts/VELPreferenceNotificationview.h"
#include "gpu/GFXObject.h"
#include "module/ViewControllers.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/host/VELGraphArrays.h"
#include "platform/windowing/Controls.h"
#include "platform/windowing/Nib.h"
#include "views/cores/DisplayedCores.h"
#include "views/menubar/VELStatusbarview.h"
#include "views/panels/VELStatusbarCompactview.h"
#include "views/panels/VELStatusbarExpandedview.h"

namespace vel {

/// Without its nib, or with one that lacks an outlet, every view is null and nothing is done.
///
/// The user's changes are saved by work that goes through the global queue to the main queue and
/// keeps the controller, its controls included, alive until it has run. Whoever ends the queues
/// runs that work first, while the platform is still installed and the store exists.
class VELViewsController : public MainViewController,
                           public std::enable_shared_from_this<VELViewsController>,
                           private GFXObjectDelegate {
 public:
  /// `bundle` has the nib and outlives the controller.
  VELViewsController(std::string nib, const Bundle& bundle);
  ~VELViewsController() override;

  void setBundleIdentifier(const std::string& identifier) override;
  void loadView() override;
  /// On any thread.
  void updateBasicCpuCoresInformation(const CpuCoresInformation& information) override;
  /// Loads the settings, those of the alerts first.
  void setVelPreferencesDefault(PreferencesStore* store) override;
  /// Feeds the histories of the graphs, has the views show the record and then checks for an alert.
  void updateViews() override;
  Property<const CPUData*>& cpuData() override { return CPUData_; }

  [[nodiscard]] View* statusbarview() const override;
  [[nodiscard]] View* preferencesview() const override;
  [[nodiscard]] View* statusbarcompactview() const override;
  [[nodiscard]] View* statusbarExpandedview() const override;
  [[nodiscard]] AlertSettingsView* preferenceNotificationview() const override {
    return preferenceNotificationview_.get();
  }

 private:
  struct Outlets {
    View& preferencesview;
    Matrix& showDisplayButton;
    Button& showGauge;
    Button& showModuleName;
    PopUpButton& popupGaugeType;
    PopUpButton& popupCPUCoresDisplayed;
    PopUpButton& popupCPUTop5Type;
    Button& btnShowGraph;
    View& gpugfxTxtField;
    Button& gpugfxBtn;
    VELGraphArraysMultiple& grapharrayobjMultiple;
  };

  static std::optional<Outlets> connect(Nib& nib);
  void awakeFromNib();
  /// Shows the settings of the graphics processors on a machine that has two to switch between.
  void setGfxGPUCardInUse(bool inUse);
  void GPUCardTypeIs(std::int64_t type) override;
  void connectActions();

  // Loading. Nothing is written to the store.
  void loadPreferences();
  [[nodiscard]] std::optional<std::int64_t> read(std::string_view key) const;
  void selectMattrixButtonToState(Matrix& matrix, std::int64_t tag);

  /// Broadcasts a control's value under the control's name and returns it. Before that the one for
  /// the graphics processor turns the watching on or off.
  std::int64_t selectedMattrixButtonState(const Control& control);
  /// Broadcasts which parts of the menu-bar item are shown and returns it, as the controls have it.
  std::int64_t selectSubItemsDisplayed();
  [[nodiscard]] std::string_view broadcastOf(const Control& control) const;

  // What the user does to the controls.
  void actionSelectBarDisplay();
  void actionSelectShowGraph();
  void actionSelectShowLabel3Letters();
  void actionSelectShowGauge();
  void actionSelectGaugeType();
  void actionSelectCPUTop5Type();
  void actionSelectCPUCoresDisplayed();
  void actionMonitorGfxGPU();

  /// Broadcasts a check box and saves it, later.
  void changeButton(const Button& button, std::string_view key);
  void changeSubItems();
  /// Broadcasts a pop-up at once and saves it later.
  void changePopUpButton(const PopUpButton& popUp, std::string_view key);
  /// Has the main thread do it later. Quick changes may change places on their way, which does no
  /// harm: work reads its control when it runs.
  void later(std::function<void()> work);
  void write(std::int64_t value, std::string_view key);

  /// Kept: the controller may go with a queue that it was on, after the platform was uninstalled.
  NotificationCenter& notificationCenter_;
  std::string nibName_;
  const Bundle& bundle_;
  std::string bundleIdentifier_;
  PreferencesStore* velPreferencesDefault_ = nullptr;
  DisplayedCores cores_;
  bool gfxGPUCardInUse_ = false;
  Property<const CPUData*> CPUData_;
  // The nib goes after what uses its objects.
  std::unique_ptr<Nib> nib_;
  std::optional<Outlets> outlets_;
  std::shared_ptr<VELStatusbarview> statusbarview_;
  std::shared_ptr<VELStatusbarCompactview> statusbarcompactview_;
  std::shared_ptr<VELStatusbarExpandedview> statusbarExpandedview_;
  std::shared_ptr<VELPreferenceNotificationview> preferenceNotificationview_;
  std::shared_ptr<GFXObject> gfxObject_;  ///< made when the nib awakes
};

}  // namespace vel
