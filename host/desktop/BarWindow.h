// The window that holds the menu-bar item: a strip at the corner of the screen, or a whole bar.
#pragma once

#include <QMetaObject>
#include <QPoint>
#include <QWidget>
#include <functional>
#include <vector>

#include "host/desktop/Options.h"

namespace vel {

/// On the primary screen, wherever that goes; the strip is as wide as the item, whenever that
/// changes.
class BarWindow : public QWidget {
 public:
  struct Actions {
    std::function<void(QPoint position)> openMenu;  ///< at a place on the screen
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

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;

 private:
  void followScreens();
  void place();
  void placeItem();
  void reservePlace(const QScreen& screen);
  [[nodiscard]] QPoint menuPosition() const;

  QWidget& item_;
  const Edge edge_;
  const bool fullWidth_;
  const Actions actions_;
  std::vector<QMetaObject::Connection> screenConnections_;
};

}  // namespace vel
