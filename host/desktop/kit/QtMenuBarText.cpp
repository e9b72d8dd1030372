#include "host/desktop/kit/QtMenuBarText.h"

#include <QFontMetricsF>
#include <QPalette>
#include <QPointF>
#include <algorithm>
#include <cmath>
#include <utility>

namespace vel {

namespace {

/// More than a figure and its sign ever take.
constexpr std::size_t kMaximumPieces = 32;

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

/// The longest piece from there on that is set as a whole: one digit, or all up to the next.
QString pieceAt(const QString& text, qsizetype start) {
  const auto* const begin = text.begin() + start;
  const auto* const end = isDigit(*begin) ? begin + 1 : std::find_if(begin, text.end(), isDigit);
  return text.mid(start, end - begin);
}

}  // namespace

QtMenuBarText::QtMenuBarText(PaintedWidget& widget) : FittingView(widget) {
  measureFont();
}

void QtMenuBarText::setTextString(std::string_view text) {
  if (text != given_) {
    given_ = text;
    text_ = QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
    widget().setAccessibleName(text_);
    fit();
  }
}

void QtMenuBarText::measureFont() {
  const QFontMetricsF metrics(widget().font(), &widget());
  digitWidth_ = widestDigit(metrics);
  capHeight_ = metrics.capHeight();
  ascent_ = metrics.ascent();
  pieces_.clear();
  fit();
}

const QtMenuBarText::Piece& QtMenuBarText::piece(const QString& text) {
  const auto known = pieces_.find(text);
  if (known != pieces_.end()) {
    return known->second;
  }
  if (pieces_.size() >= kMaximumPieces) {
    pieces_.clear();
  }
  Piece made{QStaticText(text), QFontMetricsF(widget().font(), &widget()).horizontalAdvance(text)};
  made.text.setTextFormat(Qt::PlainText);
  made.text.prepare({}, widget().font());
  return pieces_.insert({text, std::move(made)}).first->second;
}

void QtMenuBarText::fit() {
  placed_.clear();
  double x = 0.0;
  for (qsizetype start = 0; start < text_.size();) {
    const QString text = pieceAt(text_, start);
    const Piece& set = piece(text);
    const double width = isDigit(text[0]) ? digitWidth_ : set.width;
    placed_.push_back({set.text, x + (width - set.width) / 2});
    x += width;
    start += text.size();
  }
  fitWidth(static_cast<int>(std::ceil(x)));
}

void QtMenuBarText::paint(QPainter& painter) {
  const double ratio = widget().devicePixelRatioF();
  // Capitals and digits, not the font's line, are what has to look centred.
  const double baseline = (widget().height() + capHeight_) / 2;
  const double top = std::floor(baseline * ratio) / ratio - ascent_;
  painter.setPen(widget().palette().color(QPalette::WindowText));
  for (const auto& [text, x] : placed_) {
    painter.drawStaticText(QPointF(std::round(x * ratio) / ratio, top), text);
  }
}

}  // namespace vel
