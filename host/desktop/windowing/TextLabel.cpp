#include "host/desktop/windowing/TextLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <QStyle>
#include <QTransform>

namespace vel {

/// QLabel's own way makes a document of a text that can have the focus, each time it changes.
void TextLabel::paintEvent(QPaintEvent* event) {
  if (textFormat() != Qt::PlainText || wordWrap() || buddy() != nullptr) {
    QLabel::paintEvent(event);
    return;
  }
  const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
  set(text(), room.width());
  QPainter painter(this);
  drawFrame(&painter);
  painter.setPen(palette().color(foregroundRole()));
  painter.drawStaticText(
      QStyle::alignedRect(layoutDirection(), alignment(), set_.size().toSize(), room).topLeft(),
      set_);
}

void TextLabel::set(const QString& text, int width) {
  if (text == text_ && width == width_ && font() == font_) {
    return;
  }
  text_ = text;
  font_ = font();
  width_ = width;
  const QTransform scale = QTransform::fromScale(devicePixelRatioF(), devicePixelRatioF());
  set_.setTextFormat(Qt::PlainText);
  set_.setText(text);
  set_.prepare(scale, font_);
  if (set_.size().toSize().width() > width) {
    set_.setText(fontMetrics().elidedText(text, Qt::ElideRight, width));
    set_.prepare(scale, font_);
  }
}

}  // namespace vel
