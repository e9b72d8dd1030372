// Shows a menu of the module's in one of Qt's.
#pragma once

#include <QMenu>

#include "platform/windowing/Menu.h"

namespace vel {

/// Adds an action for each item, which keeps a copy of the item; its tag is the action's data.
/// Titles and tool tips appear as they are: plain text, on one line. A key equivalent of one
/// character becomes a shortcut with Ctrl, and Shift if it is a capital letter.
void appendMenu(QMenu& target, const Menu& menu);

}  // namespace vel
