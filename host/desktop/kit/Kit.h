// Makes the widget kit known to the nib loader.
#pragma once

#include "host/desktop/kit/DescribeProcess.h"
#include "host/desktop/kit/EndRequest.h"
#include "host/desktop/windowing/QtNib.h"

namespace vel {

/// The classes by their `kNibClass`. What is no view has a widget in the tree, for its name and its
/// palette, that is never shown.
/// `offerEnding` is called when the user asks to end a process, `describeProcess` when the user
/// asks what it is.
void registerKit(QtNibLoader& loader, OfferEnding offerEnding, DescribeProcess describeProcess);

/// Where nobody asks: on pictures, say.
inline void registerKit(QtNibLoader& loader) {
  registerKit(loader, {}, {});
}

}  // namespace vel
