// The item in the system tray: its gauges as the icon, its text as the tool tip.
#pragma once

#include <QSystemTrayIcon>
#include <QWidget>
#include <functional>

#include "host/desktop/ItemMenu.h"

namespace vel {

/// A tray's icons are small squares: what would be too narrow there is shown as one gauge, the mean
/// of all.
class TrayItem {
 public:
  /// `item` and `menu` outlive this object.
  TrayItem(QWidget& item, ItemMenu& menu, const std::function<void()>& clicked);

  /// On the screen; the pointer's, which has just clicked on it, where the tray does not tell.
  [[nodiscard]] QRect place() const;

  /// To be called after a refresh and a changed setting. Sends the tray a new icon only when it
  /// looks different.
  void refresh();

 private:
  [[nodiscard]] QImage paintIcon(int size) const;

  QWidget& item_;
  QSystemTrayIcon icon_;
  QImage shown_;
};

}  // namespace vel
