// The module's principal object: what the host creates and calls.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "model/VELModuleModel.h"
#include "module/ViewControllers.h"
#include "platform/foundation/Bundle.h"
#include "platform/host/ModulePrincipal.h"
#include "platform/windowing/Menu.h"
#include "processes/VELCPUProcessesInfo.h"

namespace vel {

/// A refresh is `updateModel`, then `updateViews`; until the views have been updated, no other
/// sample is taken.
class VELModuleController : public ModulePrincipal {
 public:
  /// `bundle` is the module's own and outlives the controller.
  VELModuleController(
      const Bundle& bundle, ViewControllers viewControllers,
      std::unique_ptr<VELCPUProcessesInfo> processInfo = std::make_unique<VELCPUProcessesInfo>());
  ~VELModuleController() override;

  void initMainApp() override;
  void initNCApp() override;
  void setVelPreferencesDefault(PreferencesStore* store) override;
  [[nodiscard]] PreferencesStore* velPreferencesDefault() const override {
    return velPreferencesDefault_;
  }

  [[nodiscard]] std::string moduleName() const override { return "Cpu"; }
  [[nodiscard]] View* statusbarView() const override;
  [[nodiscard]] View* statusbarCombinedView() const override;
  [[nodiscard]] View* statusbarStandAloneView() const override;
  [[nodiscard]] View* notificationCenterView() const override;
  [[nodiscard]] View* preferencesModuleView() const override;
  [[nodiscard]] View* preferenceNotificationView() const override;
  /// The module adds no options menu.
  [[nodiscard]] std::unique_ptr<Menu> moduleMenuOption() override { return nullptr; }
  [[nodiscard]] std::unique_ptr<Menu> moduleMenuPref() override;

  /// Also reads the process table: at every refresh while a panel is on screen, and otherwise only
  /// for the CPU alert, while that is on and an alert check is due.
  void updateModel() override;
  void updateViews() override;
  void notificationInforModelOfVisibleViews(const void* object) override;
  [[nodiscard]] const CPUData& readings() const override { return modulemodelobj_->record(); }

  [[nodiscard]] bool isProcessing() const override { return isProcessing_; }
  void setIsProcessing(bool processing) override { isProcessing_ = processing; }

  /// Admits at most one alert check per 10 seconds of wall-clock time.
  bool isRefreshTimeOk();

 private:
  enum class Mode : std::int64_t { mainApp = 0, notificationCenter = 1 };

  /// A launcher of the menu.
  struct UtilityAction {
    std::string title;  ///< a key of the "Localizable" table
    std::string path;
  };

  void buildMenuActions();
  void actionOpenUtilities(const MenuItem& sender) const;

  void coreInfoDidChange();
  void bindVariables();
  void unbindVariables();
  [[nodiscard]] AlertSettingsView* alertSettings() const;
  [[nodiscard]] bool isPanelOnScreen() const;
  [[nodiscard]] bool isAlertCheckDue();
  void seedThreshold();

  const Bundle& bundle_;
  ViewControllers viewControllers_;
  std::string bundleIdentifier_;
  // The model goes last: the view controllers are bound to its record.
  std::unique_ptr<VELModuleModel> modulemodelobj_;
  std::shared_ptr<MainViewController> viewcontroller_;
  std::unique_ptr<WidgetViewController> ncviewcontroller_;
  Mode moduleUsed_ = Mode::mainApp;
  std::vector<UtilityAction> dicoActions_;  ///< by the items' tags; empty until first needed
  std::optional<double> lastDate_;  ///< when the last alert check was admitted, seconds since 1970
  bool isProcessing_ = false;
  PreferencesStore* velPreferencesDefault_ = nullptr;
};

}  // namespace vel
