// The preferences: the module's pages and one of the host's.
#pragma once

#include <QTabWidget>
#include <QWidget>

#include "host/desktop/Texts.h"
#include "platform/host/ModulePrincipal.h"

namespace vel {

/// Changes apply at once; closing only hides the window.
class PreferencesWindow : public QWidget {
 public:
  /// The pages live elsewhere, and longer; they are only shown here.
  PreferencesWindow(const Texts& texts, const ModulePrincipal& module, QWidget& general);
  ~PreferencesWindow() override;

  /// Shows the window, in front of the others.
  void open();

  [[nodiscard]] int pages() const { return tabs_->count(); }
  /// The page at that place, from 0.
  void showPage(int index);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  /// None where the module has no such view.
  void addPage(const QString& title, QWidget* page);

  QTabWidget* tabs_;
};

}  // namespace vel
