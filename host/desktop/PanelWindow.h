// The window of a panel, which hangs from the item as a menu does.
#pragma once

#include <QElapsedTimer>
#include <QRect>
#include <QTimer>
#include <QWidget>
#include <functional>

#include "host/desktop/ScreenWatcher.h"

namespace vel {

/// As large as the panel, whenever that changes, and always on one screen as a whole. Closes when
/// the keyboard goes to another window, but for the bar and dialogs of this program.
class PanelWindow : public QWidget {
 public:
  struct Actions {
    std::function<QRect()> itemPlace;  ///< where the item is, on the screen
    std::function<void()> opened;      ///< the panel counts as on screen already
  };

  /// `panel` lives elsewhere and is only shown here. `bar`, the window that holds the item, is null
  /// where that is not one of this program's.
  PanelWindow(QWidget& panel, QWidget* bar, Actions actions);
  ~PanelWindow() override;

  /// Shows another panel in its place.
  void setPanel(QWidget& panel);

  /// Shows the panel, with the keyboard on it.
  void open();

  /// What a click on the item does: opens the panel, or closes it.
  void toggle();

 protected:
  bool eventFilter(QObject* object, QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  void limitFont();
  void hold(QWidget& panel);
  void release();
  void followItem();
  void place();
  void followFocus(const QWindow* focused);
  void closeByKey();

  QWidget* panel_ = nullptr;
  QWidget* const bar_;
  const Actions actions_;
  QRect item_;                ///< when it was looked at last
  bool barHadFocus_ = false;  ///< when the panel was opened
  QTimer focusIsAway_;
  QElapsedTimer focusWentAway_;  ///< since the panel was closed by that; invalid if it was not
  ScreenWatcher screens_;        ///< called after the bar's, which is older
};

}  // namespace vel
