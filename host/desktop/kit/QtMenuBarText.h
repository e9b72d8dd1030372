// A text in the menu bar.
#pragma once

#include <QFont>
#include <QPainter>
#include <QStaticText>
#include <QString>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "host/desktop/kit/FittingView.h"
#include "platform/host/VELMenuBarText.h"

namespace vel {

/// Plain text in the palette's window text colour. Every digit has the width of the widest, so that
/// a figure that changes moves nothing as long as it has as many digits.
class QtMenuBarText : public FittingView<VELMenuBarText> {
 public:
  explicit QtMenuBarText(PaintedWidget& widget);

  void setTextString(std::string_view text) override;
  [[nodiscard]] std::string stringValue() const override { return given_; }

 protected:
  void paint(QPainter& painter) override;
  void fontDidChange() override { measureFont(); }

 private:
  /// Set once for a font, as the same few come again and again.
  struct Piece {
    QStaticText text;
    double width = 0.0;
  };
  struct Placed {
    QStaticText text;
    double x = 0.0;
  };

  const Piece& piece(const QString& text);
  void measureFont();
  void fit();

  std::string given_;
  QString text_;  ///< the same
  std::vector<Placed> placed_;
  std::map<QString, Piece> pieces_;
  double digitWidth_ = 0.0;
  double capHeight_ = 0.0;
  double ascent_ = 0.0;
};

}  // namespace vel
