// What the principal object asks of the module's two view controllers, and how it gets them.
#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/foundation/Bundle.h"
#include "platform/foundation/Property.h"
#include "platform/host/CPUData.h"
#include "platform/host/PreferencesStore.h"
#include "platform/windowing/View.h"

namespace vel {

/// The alert settings.
class AlertSettingsView {
 public:
  AlertSettingsView() = default;
  virtual ~AlertSettingsView() = default;
  AlertSettingsView(const AlertSettingsView&) = delete;
  AlertSettingsView& operator=(const AlertSettingsView&) = delete;

  [[nodiscard]] virtual View& view() const = 0;
  /// Whether the CPU alert is switched on.
  [[nodiscard]] virtual bool isActivated() const = 0;
  /// The chosen threshold in percent of one core.
  [[nodiscard]] virtual float currentThresholdValue() const = 0;
};

/// The view controller of the menu-bar application. The views belong to it. Shared with its work
/// under way, so that it may outlive the principal object and the record.
class MainViewController {
 public:
  MainViewController() = default;
  virtual ~MainViewController() = default;
  MainViewController(const MainViewController&) = delete;
  MainViewController& operator=(const MainViewController&) = delete;

  virtual void setBundleIdentifier(const std::string& identifier) = 0;
  virtual void loadView() = 0;
  virtual void updateBasicCpuCoresInformation(const CpuCoresInformation& information) = 0;
  virtual void setVelPreferencesDefault(PreferencesStore* store) = 0;
  virtual void updateViews() = 0;
  virtual Property<const CPUData*>& cpuData() = 0;

  [[nodiscard]] virtual View* statusbarview() const = 0;
  [[nodiscard]] virtual View* statusbarcompactview() const = 0;
  [[nodiscard]] virtual View* statusbarExpandedview() const = 0;
  [[nodiscard]] virtual View* preferencesview() const = 0;
  [[nodiscard]] virtual AlertSettingsView* preferenceNotificationview() const = 0;
};

/// The view controller of the notification-centre widget.
class WidgetViewController {
 public:
  WidgetViewController() = default;
  virtual ~WidgetViewController() = default;
  WidgetViewController(const WidgetViewController&) = delete;
  WidgetViewController& operator=(const WidgetViewController&) = delete;

  virtual void setBundleIdentifier(const std::string& identifier) = 0;
  virtual void loadView() = 0;
  [[nodiscard]] virtual View* view() const = 0;
  virtual void updateViews() = 0;
};

/// Creates a view controller from the nib of that name in a bundle; null when there is none. A
/// function that is not set counts as one that answers null.
struct ViewControllers {
  std::function<std::shared_ptr<MainViewController>(const std::string& nib, const Bundle&)> main;
  std::function<std::unique_ptr<WidgetViewController>(const std::string& nib, const Bundle&)>
      widget;
};

}  // namespace vel
