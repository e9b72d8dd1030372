// Keeps a mouse wheel that rolls through a window from changing the settings it passes.
#pragma once

#include <QComboBox>

namespace vel {

/// From now on the wheel changes `box` only while that has the focus, and does not give it the
/// focus.
void guardFromWheel(QComboBox& box);

}  // namespace vel
