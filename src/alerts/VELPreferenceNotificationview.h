// The alert settings, and the alerts: of a process that has been above the threshold for too long,
// and of a change of the graphics processor in use.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "module/ViewControllers.h"
#include "platform/foundation/Bundle.h"
#include "platform/foundation/NotificationCenter.h"
#include "platform/foundation/Property.h"
#include "platform/host/CPUData.h"
#include "platform/host/PreferencesStore.h"
#include "platform/windowing/Controls.h"
#include "platform/windowing/Nib.h"
#include "platform/windowing/UserNotifications.h"

namespace vel {

/// Belongs to the main thread, but for what says otherwise and what the notification centre asks
/// its delegate.
class VELPreferenceNotificationview
    : public AlertSettingsView,
      public std::enable_shared_from_this<VELPreferenceNotificationview>,
      private UserNotificationCenterDelegate {
 public:
  /// Has the main thread do some work, by way of the global queue, and keeps the view and its nib
  /// alive until it is done.
  using Later = std::function<void(std::function<void()> work)>;

  struct Outlets {
    View& preferenceNotificationview;
    Button& btnNotifyMoreThan;
    PopUpButton& popNotifyMoreThanValue;     ///< tags: percent of one core
    PopUpButton& popTimeWhereValueMoreThan;  ///< tags: minutes
    Button& btnNotifygfxGPUCardSwitch;
  };

  /// The settings of a nib, not yet awake; null when the nib lacks one of the outlets. Nib and
  /// bundle outlive the view.
  static std::shared_ptr<VELPreferenceNotificationview> fromNib(Nib& nib, const Bundle& bundle,
                                                                Later later);

  VELPreferenceNotificationview(const Outlets& outlets, const Bundle& bundle, Later later);
  ~VELPreferenceNotificationview() override;

  /// Once, before anything else.
  void awakeFromNib();

  [[nodiscard]] View& view() const override { return outlets_.preferenceNotificationview; }
  [[nodiscard]] Property<const CPUData*>& cpuData() { return CPUData_; }

  /// The name space of the settings.
  void setBundleIdentifier(const std::string& identifier) { bundleIdentifier_ = identifier; }
  /// Loads the settings and broadcasts the threshold. The store outlives the view; null for none.
  void setVelPreferencesDefault(PreferencesStore* store);

  [[nodiscard]] bool isActivated() const override;
  [[nodiscard]] float currentThresholdValue() const override;

  /// The alert check, at every refresh: compares the processes above the threshold with those
  /// watched already and notifies of one at most.
  void updateNotificationStatus();

  /// Whether the machine has graphics processors to switch between: else there is no setting for
  /// their alert.
  [[nodiscard]] bool gfxGPUCardInUse() const { return gfxGPUCardInUse_; }
  void setGfxGPUCardInUse(bool inUse);

  /// The graphics processor reported last: 0 integrated, 1 discrete; -1 before the first report.
  [[nodiscard]] std::int64_t gpuType() const { return gpuType_; }
  /// On any thread. Notifies, from the main thread, if the one reported before was another; the
  /// first report tells how it stands.
  void setGpuType(std::int64_t type);
  void showNotificationForGPUType(std::string_view text);

 private:
  void loadPreferences();
  void notifyThresholdValue();
  void enablePopUps();
  [[nodiscard]] std::optional<std::int64_t> read(std::string_view key) const;
  void write(std::int64_t value, std::string_view key);

  // What the user does to the controls.
  void actionNotifyMoreThan();
  void actionNotifyMoreThanValue();
  void actionTimeWhereValueMoreThan();
  void actionNotifyGfxGPUCardSwitch();

  void updateWatchList(double now);
  void alertOfOne(double now);
  [[nodiscard]] std::string alertText(const std::string& pid) const;
  void showNotification(const std::string& text);
  void alertOfGPU(std::int64_t type);
  bool shouldPresentNotification(const UserNotification& /*notification*/) override { return true; }

  /// Kept: the view may go with its controller after the platform was uninstalled.
  NotificationCenter& notificationCenter_;
  UserNotificationCenter& userNotificationCenter_;
  Outlets outlets_;
  const Bundle& bundle_;
  Later later_;

  /// From a pid to when it was first seen above the threshold.
  std::map<std::string, double, std::less<>> dicoMonitored_;
  double lastNotif_ = 0.0;  ///< when the last CPU alert was delivered; until then, the awakening
  bool isProcessing_ = false;
  Property<const CPUData*> CPUData_;
  PreferencesStore* velPreferencesDefault_ = nullptr;
  std::string bundleIdentifier_;
  bool gfxGPUCardInUse_ = false;
  std::atomic<std::int64_t> gpuType_ = 0;
};

}  // namespace vel
