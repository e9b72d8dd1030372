// Paints graphs, with all edges on device pixels.
#pragma once

#include <QColor>
#include <QPainter>
#include <QPalette>

#include "host/desktop/kit/GraphPicture.h"

namespace vel {

struct GraphColors {
  QColor background;
  QColor rule;
  QColor normal;
  QColor high;
};

/// For a graph on a window of that palette.
[[nodiscard]] GraphColors graphColors(const QPalette& palette);

void paintGraph(QPainter& painter, const GraphPicture& picture, const GraphColors& colors);

}  // namespace vel
