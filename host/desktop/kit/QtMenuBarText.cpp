#include "host/desktop/kit/QtMenuBarText.h"

#include <QFontMetricsF>
#include <QPalette>
#include <QPointF>
#include <algorithm>
#include <cmath>
#include <functional>
#include <utility>

namespace vel {

namespace {

bool isDigit(QChar character) {
  return character >= u'0' && character <= u'9';
}

/// In whole points: digits then look alike wherever they stand.
double widestDigit(const QFontMetricsF& metrics) {
  double widest = 0.0;
  for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
    widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
  }
  return std::round(widest);
}

/// Hands on what stands together, each digit on its own, with its offset. Returns the whole width.
double eachPart(const QString& text, const QFontMetricsF& metrics,
                const std::function<void(const QString& part, double x)>& handle) {
  const double digitWidth = widestDigit(metrics);
  double x = 0.0;
  for (qsizetype start = 0; start < text.size();) {
    if (isDigit(text[start])) {
      const double advance = metrics.horizontalAdvance(text[start]);
      handle(text.mid(start, 1), x + (digitWidth - advance) / 2);
      x += digitWidth;
      ++start;
    } else {
      const auto* const end = std::find_if(text.begin() + start, text.end(), isDigit);
      const QString part = text.mid(start, end - text.begin() - start);
      handle(part, x);
      x += metrics.horizontalAdvance(part);
      start += part.size();
    }
  }
  return x;
}

}  // namespace

QtMenuBarText::QtMenuBarText(PaintedWidget& widget) : PaintedView(widget) {
  fit();
}

void QtMenuBarText::setTextString(std::string_view text) {
  QString changed = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
  if (changed != text_) {
    text_ = std::move(changed);
    widget().setAccessibleName(text_);
    fit();
  }
}

void QtMenuBarText::fit() {
  const auto measureOnly = [](const QString& /*part*/, double /*x*/) {};
  const QFontMetricsF metrics(widget().font(), &widget());
  fitWidth(static_cast<int>(std::ceil(eachPart(text_, metrics, measureOnly))));
}

void QtMenuBarText::paint(QPainter& painter) {
  const QFontMetricsF metrics(widget().font(), &widget());
  const double ratio = widget().devicePixelRatioF();
  // Capitals and digits, not the font's line, are what has to look centred.
  const double baseline = (widget().height() + metrics.capHeight()) / 2;
  const double y = std::floor(baseline * ratio) / ratio;
  painter.setPen(widget().palette().color(QPalette::WindowText));
  eachPart(text_, metrics, [&](const QString& part, double x) {
    painter.drawText(QPointF(std::round(x * ratio) / ratio, y), part);
  });
}

}  // namespace vel
