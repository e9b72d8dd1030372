// A module's name in the menu bar: three letters, one above the other.
#pragma once

#include <QFont>
#include <QPainter>
#include <QString>
#include <string_view>
#include <vector>

#include "host/desktop/kit/FittingView.h"
#include "platform/foundation/Property.h"
#include "platform/host/VELModuleNameStatusBarView.h"

namespace vel {

/// A column of small bold letters as narrow as the widest of them. Of a longer name the first three
/// letters are shown.
class QtModuleNameStatusBarView : public FittingView<VELModuleNameStatusBarView> {
 public:
  explicit QtModuleNameStatusBarView(PaintedWidget& widget);

  /// Null for none: the colour stays.
  void setColorObject(VELColor* color) override;
  void setThreeLetterName(std::string_view name) override;

 protected:
  void paint(QPainter& painter) override;
  void fontDidChange() override { fit(); }

 private:
  void fit();
  [[nodiscard]] QFont letterFont() const;

  QString name_;
  std::vector<QString> letters_;
  Property<Color> color_{Color{}, [this](const Color&) { widget().update(); }};
};

}  // namespace vel
