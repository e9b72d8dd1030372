#include "host/desktop/kit/QtGraphMultiple.h"

#include <cstddef>

#include "host/desktop/kit/GaugePainter.h"
#include "host/desktop/kit/GraphPainter.h"

namespace vel {

void QtGraphMultiple::paint(QPainter& painter) {
  picture_.layOut(devicePixels(painter, widget().rect()), devicePixelRatio(painter), history(),
                  static_cast<std::size_t>(numberOfGraphs()), maxValue());
  paintGraph(painter, picture_, graphColors(widget().palette()));
}

}  // namespace vel
