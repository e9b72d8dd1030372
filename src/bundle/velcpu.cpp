// The plug-in's one exported function: puts the module together and hands its principal object to
// the host.
#include <exception>
#include <memory>

#include "module/VELModuleController.h"
#include "platform/host/ModulePrincipal.h"
#include "views/panels/VELNCViewsController.h"
#include "views/preferences/VELViewsController.h"

vel::ModulePrincipal* velCreatePrincipal(const vel::Bundle& bundle) noexcept {
  const auto mainViews = [](const std::string& nib, const vel::Bundle& nibBundle) {
    return std::make_shared<vel::VELViewsController>(nib, nibBundle);
  };
  const auto widgetViews = [](const std::string& nib, const vel::Bundle& nibBundle) {
    return std::make_unique<vel::VELNCViewsController>(nib, nibBundle);
  };
  try {
    return std::make_unique<vel::VELModuleController>(
               bundle, vel::ViewControllers{.main = mainViews, .widget = widgetViews})
        .release();
  } catch (const std::exception&) {
    return nullptr;
  }
}
