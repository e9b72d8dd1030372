// A text in the menu bar.
#pragma once

#include <QFont>
#include <QPainter>
#include <QString>
#include <string>
#include <string_view>

#include "host/desktop/kit/PaintedView.h"
#include "platform/host/VELMenuBarText.h"

namespace vel {

/// Plain text in the palette's window text colour. Every digit has the width of the widest, so that
/// a figure that changes moves nothing as long as it has as many digits.
class QtMenuBarText : public PaintedView<VELMenuBarText> {
 public:
  explicit QtMenuBarText(PaintedWidget& widget);

  void setTextString(std::string_view text) override;
  [[nodiscard]] std::string stringValue() const override { return text_.toStdString(); }

 protected:
  void paint(QPainter& painter) override;
  void fontDidChange() override { fit(); }

 private:
  void fit();

  QString text_;
};

}  // namespace vel
