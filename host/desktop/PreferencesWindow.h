// The preferences: a page of the module's and one of the host's.
#pragma once

#include <QTabWidget>
#include <QWidget>
#include <vector>

#include "host/desktop/Texts.h"

namespace vel {

/// Changes apply at once; closing only hides the window.
class PreferencesWindow : public QWidget {
 public:
  struct Page {
    QString title;
    QWidget* widget;  ///< lives elsewhere, and longer; is only shown here
  };

  PreferencesWindow(const Texts& texts, const std::vector<Page>& pages);
  ~PreferencesWindow() override;

  /// Shows the window, in front of the others.
  void open();

  /// The page at that place, from 0.
  void showPage(int index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  QTabWidget* tabs_;
};

}  // namespace vel
