// The plug-in contract: what a host calls on a module, and how it gets hold of it.
#pragma once

#include <memory>
#include <string>

#include "platform/foundation/Bundle.h"
#include "platform/host/CPUData.h"
#include "platform/host/PreferencesStore.h"
#include "platform/windowing/Menu.h"
#include "platform/windowing/View.h"

namespace vel {

/// Changes whenever a module built against the one contract could not be called through the other.
/// A bundle's Info.strings states its own under `kContractKey`; a host refuses any other version
/// before it calls anything.
inline constexpr int kContractVersion = 4;
inline constexpr const char* kContractKey = "contract";
/// The Info.strings key that names the bundle's shared library, a file in the bundle's directory.
inline constexpr const char* kLibraryKey = "library";

/// The one object that the host talks to. The host calls, in this order: exactly one of
/// `initMainApp` and `initNCApp`; `setVelPreferencesDefault`; then the accessors as needed and,
/// again and again, `updateModel` followed by `updateViews`, both on the main thread. Nothing is
/// thrown and no failure is reported; what does not exist in the chosen mode is null.
class ModulePrincipal {
 public:
  ModulePrincipal() = default;
  virtual ~ModulePrincipal();
  ModulePrincipal(const ModulePrincipal&) = delete;
  ModulePrincipal& operator=(const ModulePrincipal&) = delete;

  /// Serve the menu-bar application.
  virtual void initMainApp() = 0;
  /// Serve the notification-centre widget.
  virtual void initNCApp() = 0;

  /// The store stays the host's, which keeps it alive as long as the module.
  virtual void setVelPreferencesDefault(PreferencesStore* store) = 0;
  [[nodiscard]] virtual PreferencesStore* velPreferencesDefault() const = 0;

  [[nodiscard]] virtual std::string moduleName() const = 0;

  // The views of the menu-bar application. They belong to the module.

  /// The menu-bar item.
  [[nodiscard]] virtual View* statusbarView() const = 0;
  /// The compact panel.
  [[nodiscard]] virtual View* statusbarCombinedView() const = 0;
  /// The expanded panel.
  [[nodiscard]] virtual View* statusbarStandAloneView() const = 0;
  [[nodiscard]] virtual View* preferencesModuleView() const = 0;
  /// The alert settings.
  [[nodiscard]] virtual View* preferenceNotificationView() const = 0;

  /// The view of the notification-centre widget.
  [[nodiscard]] virtual View* notificationCenterView() const = 0;

  // The module's menus: a new one at every call. A menu is of use as long as the module lives.

  [[nodiscard]] virtual std::unique_ptr<Menu> moduleMenuOption() = 0;
  /// The launchers of the system's own utilities.
  [[nodiscard]] virtual std::unique_ptr<Menu> moduleMenuPref() = 0;

  /// Takes a sample, unless one has been taken that `updateViews` has not shown yet.
  virtual void updateModel() = 0;
  virtual void updateViews() = 0;

  /// Whether a refresh is under way: from `updateModel` to the end of `updateViews`.
  [[nodiscard]] virtual bool isProcessing() const = 0;
  virtual void setIsProcessing(bool processing) = 0;

  /// Tells the module that its views may be seen. The refresh does not depend on it. `object` is
  /// not read.
  virtual void notificationInforModelOfVisibleViews(const void* object) = 0;

  /// The record that `updateModel` writes; lives as long as the module.
  [[nodiscard]] virtual const CPUData& readings() const = 0;
};

}  // namespace vel

/// The function that a bundle's library exports. `bundle` outlives the module. The caller owns the
/// result; null when the module cannot be created.
extern "C" vel::ModulePrincipal* velCreatePrincipal(const vel::Bundle& bundle) noexcept;

namespace vel {

using CreatePrincipal = decltype(&velCreatePrincipal);
inline constexpr const char* kCreatePrincipalSymbol = "velCreatePrincipal";

}  // namespace vel
