// The program's light and dark look.
#pragma once

#include <QPalette>

#include "host/Appearance.h"
#include "host/desktop/kit/DesktopColorScheme.h"

namespace vel {

/// For Qt's Fusion style. `accent` is what is selected and what can be clicked; a grey one is
/// replaced by a blue.
[[nodiscard]] QPalette lightPalette(const QColor& accent);
[[nodiscard]] QPalette darkPalette(const QColor& accent);

/// Keeps the application's palette at an appearance. To be made after the QApplication, and one
/// only; the desktop's palette stays in force when it goes.
class Theme {
 public:
  Theme();

  /// Following the desktop means its own palette, unless the desktop has asked programs for dark or
  /// light and this palette is not: then ours.
  void setAppearance(Appearance appearance);

 private:
  void apply();

  Appearance appearance_ = Appearance::followDesktop;
  DesktopColorScheme desktop_;
};

}  // namespace vel
