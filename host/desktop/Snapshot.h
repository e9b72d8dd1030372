// Pictures of everything that Velbar shows, for its documentation and for bug reports.
#pragma once

#include <filesystem>

#include "host/desktop/Texts.h"
#include "host/desktop/kit/Theme.h"
#include "host/session/ModuleSession.h"

namespace vel {

/// Writes PNG files into `directory`, which is made if it is missing: the item in every gauge style
/// and core mode, the panels and the preferences, light and dark, with the readings of this
/// machine. The user's settings are neither read nor written. Throws std::runtime_error naming a
/// file that cannot be written.
void takeSnapshots(const std::filesystem::path& directory, ModuleSession& session,
                   const Texts& texts, Theme& theme);

}  // namespace vel
