#include "host/desktop/windowing/QtDrawingContext.h"

#include <QFontMetricsF>
#include <QRectF>
#include <QString>
#include <algorithm>
#include <cmath>

#include "host/desktop/windowing/Colors.h"

namespace vel {
namespace {

QRectF toQRectF(const Rect& rect) {
  return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

QString toQString(std::string_view utf8) {
  return QString::fromUtf8(utf8.data(), qsizetype(utf8.size()));
}

int flagsOf(const TextAttributes& attributes) {
  const int alignment = attributes.alignment == TextAlignment::center
                            ? int(Qt::AlignHCenter)
                            : int(Qt::AlignLeft) | int(Qt::AlignAbsolute);
  return alignment | int(Qt::AlignTop) | int(Qt::TextWordWrap) | int(Qt::TextDontClip);
}

}  // namespace

void QtDrawingContext::clip(const Rect& rect) {
  painter().setClipRect(toQRectF(rect), Qt::IntersectClip);
}

void QtDrawingContext::fillRoundedRect(const Rect& rect, Size radii, const Color& color) {
  painter().setPen(Qt::NoPen);
  painter().setBrush(toQColor(color));
  painter().drawRoundedRect(toQRectF(rect), radii.width, radii.height);
}

Size QtDrawingContext::sizeOfText(std::string_view text, Size maximum,
                                  const TextAttributes& attributes) {
  const double scale = textScale();
  const QFontMetricsF metrics(fontOf(attributes.fontSize * scale), &widget_);
  const QRectF place(0.0, 0.0, maximum.width * scale, maximum.height * scale);
  const QRectF taken = metrics.boundingRect(place, flagsOf(attributes), toQString(text));
  return {taken.width() / scale, taken.height() / scale};
}

void QtDrawingContext::drawText(std::string_view text, const Rect& rect,
                                const TextAttributes& attributes) {
  QPainter& painter = this->painter();
  const double scale = textScale();
  painter.save();
  painter.translate(rect.origin.x, rect.origin.y + rect.size.height);
  painter.scale(1.0 / scale, -1.0 / scale);
  painter.setFont(fontOf(attributes.fontSize * scale));
  painter.setPen(toQColor(attributes.color));
  painter.drawText(QRectF(0.0, 0.0, rect.size.width * scale, rect.size.height * scale),
                   flagsOf(attributes), toQString(text));
  painter.restore();
}

QPainter& QtDrawingContext::painter() {
  if (!painter_) {
    painter_.emplace(&widget_);
    painter_->setRenderHint(QPainter::Antialiasing);
    painter_->translate(0.0, widget_.height());
    painter_->scale(1.0, -1.0);
  }
  return *painter_;
}

double QtDrawingContext::textScale() {
  return std::abs(painter().worldTransform().m22());
}

QFont QtDrawingContext::fontOf(double size) const {
  QFont font = widget_.font();
  font.setPixelSize(std::max(1, int(std::lround(size))));
  font.setHintingPreference(QFont::PreferFullHinting);  // What is drawn here is small.
  return font;
}

}  // namespace vel
