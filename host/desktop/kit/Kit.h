// Makes the widget kit known to the nib loader.
#pragma once

#include "host/desktop/windowing/QtNib.h"

namespace vel {

/// The classes by their `kNibClass`. What is no view has a widget in the tree, for its name and its
/// palette, that is never shown.
void registerKit(QtNibLoader& loader);

}  // namespace vel
