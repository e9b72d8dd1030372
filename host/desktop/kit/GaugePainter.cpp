#include "host/desktop/kit/GaugePainter.h"

#include <QPen>
#include <QTransform>
#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

#include "host/desktop/windowing/Colors.h"

namespace vel {

namespace {

/// Straight up, and on clockwise, in Qt's sixteenths of a degree.
constexpr int kTop = 90 * 16;
constexpr int kWholeTurn = 360 * 16;

/// Without the corners, which rounds them.
void paintOutline(QPainter& painter, const QRect& rect, int line, const QColor& color) {
  const QRect inside = rect.adjusted(line, line, -line, -line);
  painter.fillRect(inside.left(), rect.top(), inside.width(), line, color);
  painter.fillRect(inside.left(), inside.bottom() + 1, inside.width(), line, color);
  painter.fillRect(rect.left(), inside.top(), line, inside.height(), color);
  painter.fillRect(inside.right() + 1, inside.top(), line, inside.height(), color);
}

void paintBar(QPainter& painter, const GaugePicture& picture, const GaugePicture::Cell& cell,
              const QColor& outer) {
  QRect empty = picture.barArea(cell);
  QRect filled = empty;
  filled.setTop(empty.bottom() + 1 - cell.level);
  empty.setBottom(filled.top() - 1);
  if (picture.isOutlined) {
    paintOutline(painter, cell.place, picture.line, outer);
  } else {
    painter.fillRect(empty, outer);
  }
  painter.fillRect(filled, toQColor(cell.color));
}

void paintSegments(QPainter& painter, const GaugePicture& picture, const GaugePicture::Cell& cell,
                   const QColor& outer) {
  const int gap = picture.segmentPitch - picture.segmentHeight;
  const int unused = cell.place.height() + gap - picture.steps * picture.segmentPitch;
  const QColor lit = toQColor(cell.color);
  QRect segment(cell.place.left(), cell.place.bottom() + 1 - unused / 2 - picture.segmentHeight,
                cell.place.width(), picture.segmentHeight);
  for (int i = 0; i < picture.steps; ++i) {
    painter.fillRect(segment, i < cell.level ? lit : outer);
    segment.translate(0, -picture.segmentPitch);
  }
}

QRectF inset(const QRect& rect, double by) {
  return QRectF(rect).adjusted(by, by, -by, -by);
}

int turn(const GaugePicture& picture, const GaugePicture::Cell& cell) {
  return kWholeTurn * cell.level / std::max(picture.steps, 1);
}

void paintPie(QPainter& painter, const GaugePicture& picture, const GaugePicture::Cell& cell,
              const QColor& outer) {
  QRectF disc(cell.place);
  if (picture.isOutlined) {
    disc = inset(cell.place, picture.line);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(outer, picture.line));
    painter.drawEllipse(inset(cell.place, picture.line / 2.0));
    painter.setPen(Qt::NoPen);
  } else {
    painter.setPen(Qt::NoPen);
    painter.setBrush(outer);
    painter.drawEllipse(disc);
  }
  painter.setBrush(toQColor(cell.color));
  if (cell.level == picture.steps) {
    painter.drawEllipse(disc);
  } else if (cell.level > 0) {
    painter.drawPie(disc, kTop, -turn(picture, cell));
  }
}

void paintRing(QPainter& painter, const GaugePicture& picture, const GaugePicture::Cell& cell,
               const QColor& outer) {
  const int diameter = cell.place.width();
  const int stroke = std::max(2, static_cast<int>(std::lround(diameter * 0.2)));
  const QRectF path = inset(cell.place, stroke / 2.0);
  painter.setBrush(Qt::NoBrush);
  painter.setPen(QPen(outer, stroke, Qt::SolidLine, Qt::FlatCap));
  painter.drawEllipse(path);

  painter.setPen(QPen(toQColor(cell.color), stroke, Qt::SolidLine, Qt::FlatCap));
  if (cell.level == picture.steps) {
    painter.drawEllipse(path);
  } else if (cell.level > 0) {
    painter.drawArc(path, kTop, -turn(picture, cell));
  }
}

}  // namespace

QRect devicePixels(const QPainter& painter, const QRect& rect) {
  // What a scale of 1.25 makes of whole numbers is exact but for this.
  constexpr double kRounding = 1.0 / 1024;
  const QRectF device = painter.deviceTransform().mapRect(QRectF(rect));
  const QPoint topLeft(static_cast<int>(std::ceil(device.left() - kRounding)),
                       static_cast<int>(std::ceil(device.top() - kRounding)));
  const QPoint end(static_cast<int>(std::floor(device.right() + kRounding)),
                   static_cast<int>(std::floor(device.bottom() + kRounding)));
  return {topLeft, end - QPoint(1, 1)};
}

double devicePixelRatio(const QPainter& painter) {
  return painter.deviceTransform().m11();
}

void paintGauges(QPainter& painter, const GaugePicture& picture) {
  using Paint = void (*)(QPainter&, const GaugePicture&, const GaugePicture::Cell&, const QColor&);
  static constexpr std::array<Paint, 4> kPaint{paintBar, paintPie, paintSegments, paintRing};
  const Paint paint = kPaint[static_cast<std::size_t>(picture.style) - 1];
  const QColor outer = toQColor(picture.outer);

  painter.save();
  painter.setTransform(painter.deviceTransform().inverted(), true);
  painter.setRenderHint(QPainter::Antialiasing,
                        picture.style == GaugeStyle::pie || picture.style == GaugeStyle::ring);
  for (const GaugePicture::Cell& cell : picture.cells) {
    paint(painter, picture, cell, outer);
  }
  painter.restore();
}

void paintGauges(QPainter& painter, const QRect& rect, std::int64_t type,
                 const std::vector<VELGaugeViewMultiple::Gauge>& gauges, const Color& outer) {
  GaugePicture picture;
  picture.layOut(devicePixels(painter, rect), devicePixelRatio(painter), type, gauges, outer);
  paintGauges(painter, picture);
}

}  // namespace vel
