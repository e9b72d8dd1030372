#include "host/desktop/TrayItem.h"

#include <QCursor>
#include <QGuiApplication>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "host/desktop/kit/GaugePainter.h"
#include "host/desktop/kit/GaugePicture.h"
#include "host/desktop/windowing/WidgetViews.h"
#include "platform/host/VELMenuBarText.h"

namespace vel {
namespace {

constexpr int kFallbackSize = 22;
constexpr double kPlateRadius = 3.0;
constexpr int kPlateMargin = 2;

/// The first view of that kind in the item that is not hidden.
template <typename Kind>
Kind* find(const QWidget& item) {
  for (const QWidget* child : item.findChildren<QWidget*>()) {
    if (auto* view = dynamic_cast<Kind*>(viewOf(*child)); view != nullptr && !view->isHidden()) {
      return view;
    }
  }
  return nullptr;
}

using Gauges = std::vector<VELGaugeViewMultiple::Gauge>;

/// The mean of all, in the colour of the highest.
Gauges asOne(const Gauges& gauges) {
  float sum = 0.0F;
  VELGaugeViewMultiple::Gauge highest = gauges.front();
  for (const auto& gauge : gauges) {
    sum += gauge.value;
    highest = gauge.value > highest.value ? gauge : highest;
  }
  return {{sum / static_cast<float>(gauges.size()), highest.innerColor}};
}

/// The panel's colour is not known: on a plate of its own the icon can be seen on any.
void paintPlate(QPainter& painter, int size) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(QGuiApplication::palette().window());
  painter.drawRoundedRect(QRect(0, 0, size, size), kPlateRadius, kPlateRadius);
  painter.setRenderHint(QPainter::Antialiasing, false);
}

}  // namespace

TrayItem::TrayItem(QWidget& item, ItemMenu& menu, const std::function<void()>& clicked)
    : item_(item) {
  icon_.setContextMenu(&menu.menu());
  QObject::connect(&icon_, &QSystemTrayIcon::activated, &icon_,
                   [clicked](QSystemTrayIcon::ActivationReason reason) {
                     if (reason == QSystemTrayIcon::Trigger) {
                       clicked();
                     }
                   });
  refresh();
  icon_.show();
}

QRect TrayItem::place() const {
  const QRect place = icon_.geometry();
  return place.isEmpty() ? QRect(QCursor::pos(), QSize(1, 1)) : place;
}

void TrayItem::refresh() {
  const QRect place = icon_.geometry();
  const QImage image =
      paintIcon(place.isEmpty() ? kFallbackSize : std::min(place.width(), place.height()));
  if (image != shown_) {
    shown_ = image;
    icon_.setIcon(QPixmap::fromImage(image));
  }
  QString tip = QStringLiteral("Velbar");
  if (const auto* text = find<VELMenuBarText>(item_);
      text != nullptr && !text->stringValue().empty()) {
    tip += QStringLiteral(": ") + QString::fromStdString(text->stringValue());
  }
  if (tip != icon_.toolTip()) {
    icon_.setToolTip(tip);
  }
}

QImage TrayItem::paintIcon(int size) const {
  const double ratio = item_.devicePixelRatioF();
  const int pixels = static_cast<int>(std::lround(size * ratio));
  QImage image(pixels, pixels, QImage::Format_ARGB32_Premultiplied);
  image.setDevicePixelRatio(ratio);
  image.fill(Qt::transparent);
  QPainter painter(&image);
  paintPlate(painter, size);
  auto* gauges = find<VELGaugeViewMultiple>(item_);
  if (gauges != nullptr && !gauges->gauges().empty()) {
    const std::int64_t type = gauges->gaugeDefinedType();
    const bool fits = gaugesWidth(type, gauges->gauges().size()) <= size - 2 * kPlateMargin;
    const QRect inside =
        QRect(0, 0, size, size).adjusted(kPlateMargin, kPlateMargin, -kPlateMargin, -kPlateMargin);
    paintGauges(painter, inside, type, fits ? gauges->gauges() : asOne(gauges->gauges()),
                gauges->outerColor().get());
  } else {
    const double scale = static_cast<double>(size) / std::max(1, item_.width());
    painter.translate(0.0, (size - item_.height() * scale) / 2.0);
    painter.scale(scale, scale);
    item_.render(&painter, QPoint(), QRegion(), QWidget::DrawChildren);
  }
  return image;
}

}  // namespace vel
