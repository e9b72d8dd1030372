// The window that holds the menu-bar item: a strip at the corner of the screen, or a whole bar.
#pragma once

#include <QPoint>
#include <QRect>
#include <QWidget>
#include <functional>

#include "host/desktop/Options.h"
#include "host/desktop/ScreenWatcher.h"

namespace vel {

/// On the primary screen, wherever that goes; the strip is as wide as the item, whenever that
/// changes.
class BarWindow : public QWidget {
 public:
  struct Actions {
    std::function<void()> clickItem;
    std::function<void()> openMenu;
    std::function<void()> openPreferences;
    std::function<void()> quit;
  };

  /// Height of the bar, in points.
  static constexpr int kHeight = 24;

  /// `item` lives elsewhere and is only shown here.
  BarWindow(QWidget& item, Edge edge, bool fullWidth, Actions actions);
  ~BarWindow() override;

  /// Shows the window, above the others.
  void bringUp();

  /// What hangs from the item hangs from here: over the height of the bar, on the screen.
  [[nodiscard]] QRect itemPlace() const;
  /// The corner of that for a menu.
  [[nodiscard]] QPoint menuPosition() const;

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void place();
  void placeItem();
  void reservePlace(const QScreen& screen);

  QWidget& item_;
  const Edge edge_;
  const bool fullWidth_;
  const Actions actions_;
  ScreenWatcher screens_;
};

}  // namespace vel
