#include "host/desktop/kit/GraphPainter.h"

#include <QTransform>
#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <span>

#include "host/desktop/kit/Contrast.h"
#include "host/desktop/windowing/Colors.h"

namespace vel {

namespace {

using Samples = std::span<const GraphPicture::Sample>;

QColor faint(QColor color, float alpha) {
  color.setAlphaF(color.alphaF() * alpha);
  return color;
}

/// Calls `paint(rect, sample, older)` for each run of equal samples, the latest first: the rect as
/// high as the cell, and the sample before the run.
template <typename Paint>
void forEachRun(const QRect& cell, int sampleWidth, Samples samples, Paint paint) {
  int end = cell.right() + 1;
  for (auto run = samples.begin(); run != samples.end() && run->level >= 0;) {
    const auto next =
        std::find_if(run, samples.end(), [&](const auto& other) { return other != *run; });
    const int start = std::max(end - static_cast<int>(next - run) * sampleWidth, cell.left());
    paint(QRect(start, cell.top(), end - start, cell.height()), *run,
          next == samples.end() ? GraphPicture::Sample() : *next);
    end = start;
    run = next;
  }
}

const QColor& colorOf(const GraphPicture::Sample& sample, const GraphColors& colors) {
  return sample.isHigh ? colors.high : colors.normal;
}

void paintChart(QPainter& painter, const GraphPicture& picture, const QRect& cell, Samples samples,
                const GraphColors& colors) {
  const int line = picture.line;
  const int bottom = cell.bottom() + 1;
  painter.fillRect(cell, colors.background);
  if (picture.hasRule) {
    painter.fillRect(cell.left(), cell.top() + (cell.height() - line) / 2, cell.width(), line,
                     colors.rule);
  }
  painter.fillRect(cell.left(), bottom - line, cell.width(), line, colors.rule);

  const auto topOf = [&](const auto& sample) { return bottom - std::max(sample.level, line); };
  forEachRun(cell, picture.sampleWidth, samples,
             [&](QRect run, const auto& sample, const auto& older) {
               const QColor& color = colorOf(sample, colors);
               const int top = topOf(sample);
               painter.fillRect(run.left(), top, run.width(), line, color);
               run.setTop(top + line);
               painter.fillRect(run, faint(color, 0.35F));
               const int olderTop = older.level < 0 ? top : topOf(older);
               const int edge = std::abs(olderTop - top) - line;
               if (edge > 0) {
                 painter.fillRect(run.left(), std::min(top, olderTop) + line, line, edge,
                                  olderTop < top ? colorOf(older, colors) : color);
               }
             });
}

void paintLane(QPainter& painter, const GraphPicture& picture, const QRect& cell, Samples samples,
               const GraphColors& colors) {
  painter.fillRect(cell, colors.background);
  forEachRun(cell, picture.sampleWidth, samples,
             [&](const QRect& run, const auto& sample, const auto& /*older*/) {
               const float share =
                   static_cast<float>(sample.level) / static_cast<float>(picture.steps);
               painter.fillRect(run, faint(colorOf(sample, colors), share));
             });
}

}  // namespace

GraphColors graphColors(const QPalette& palette) {
  const QColor window = palette.color(QPalette::Window);
  const QColor text = palette.color(QPalette::WindowText);
  return {.background = faint(text, 0.06F),
          .rule = faint(text, 0.16F),
          .normal = readableOn(window, palette.color(QPalette::Highlight)),
          .high = toQColor(redColor.withAlpha(0.8))};  // As the gauges'.
}

void paintGraph(QPainter& painter, const GraphPicture& picture, const GraphColors& colors) {
  painter.save();
  painter.setTransform(painter.deviceTransform().inverted(), true);
  if (picture.cells.empty()) {
    painter.fillRect(picture.frame, colors.background);
  }
  const Samples samples(picture.samples);
  const auto perCell = static_cast<std::size_t>(picture.samplesPerCell);
  const auto paint = picture.style == GraphStyle::charts ? paintChart : paintLane;
  for (std::size_t i = 0; i < picture.cells.size(); ++i) {
    paint(painter, picture, picture.cells[i], samples.subspan(i * perCell, perCell), colors);
  }
  painter.restore();
}

}  // namespace vel
