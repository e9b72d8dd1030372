#include "host/desktop/windowing/TextLabel.h"

#include <QFontMetrics>
#include <QPainter>
#include <QRect>
#include <QString>
#include <QStyle>

namespace vel {

void TextLabel::paintEvent(QPaintEvent* event) {
  const QFontMetrics metrics = fontMetrics();
  const QRect room = contentsRect().adjusted(margin(), margin(), -margin(), -margin());
  if (textFormat() != Qt::PlainText || wordWrap() || buddy() != nullptr ||
      metrics.horizontalAdvance(text()) <= room.width()) {
    QLabel::paintEvent(event);
    return;
  }
  QPainter painter(this);
  drawFrame(&painter);
  style()->drawItemText(
      &painter, room, int(QStyle::visualAlignment(layoutDirection(), alignment())), palette(),
      isEnabled(), metrics.elidedText(text(), Qt::ElideRight, room.width()), foregroundRole());
}

}  // namespace vel
