// Paints gauges: straight edges on device pixels at every scale, round ones smoothed.
#pragma once

#include <QPainter>
#include <QRect>
#include <cstdint>
#include <vector>

#include "host/desktop/kit/GaugePicture.h"

namespace vel {

/// The whole device pixels within `rect` of a painter that scales and moves only.
[[nodiscard]] QRect devicePixels(const QPainter& painter, const QRect& rect);

/// Device pixels per point.
[[nodiscard]] double devicePixelRatio(const QPainter& painter);

void paintGauges(QPainter& painter, const GaugePicture& picture);

/// Into `rect`, in the painter's coordinates: a tray icon, say. gaugesWidth() tells the width that
/// suits.
void paintGauges(QPainter& painter, const QRect& rect, std::int64_t type,
                 const std::vector<VELGaugeViewMultiple::Gauge>& gauges, const Color& outer);

}  // namespace vel
