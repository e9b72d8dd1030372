// The module's localisation lookup, the same for the controller and every view.
#pragma once

#include <string_view>

#include "platform/foundation/Bundle.h"

namespace vel {

/// The text for `key` in the "Localizable" table of the module's own bundle; without an entry,
/// `key` itself. Lives as long as both arguments.
inline std::string_view VELLoc(const Bundle& bundle, std::string_view key) {
  return bundle.localizedString(key);
}

}  // namespace vel
