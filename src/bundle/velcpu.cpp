// The plug-in's one exported function: puts the module together and hands its principal object to
// the host.
#include <exception>

#include "module/VELModuleController.h"
#include "platform/host/ModulePrincipal.h"

vel::ModulePrincipal* velCreatePrincipal(const vel::Bundle& bundle) noexcept {
  try {
    return std::make_unique<vel::VELModuleController>(bundle, vel::ViewControllers{}).release();
  } catch (const std::exception&) {
    return nullptr;
  }
}
