#include "platform/host/ModulePrincipal.h"

namespace vel {

// Out of line, so that host and module share one type information object.
ModulePrincipal::~ModulePrincipal() = default;

}  // namespace vel
