#include "host/desktop/kit/QtModuleNameStatusBarView.h"

#include <QFontMetricsF>
#include <QPointF>
#include <QTextBoundaryFinder>
#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "host/desktop/windowing/Colors.h"

namespace vel {

namespace {

constexpr std::size_t kLetters = 3;
// In points, of capitals. Three letters and two gaps fill 19 of the menu bar's usual 22; with less
// of a gap they run together once they are hinted.
constexpr int kLetterHeight = 5;
constexpr int kGap = 2;
constexpr int kMargin = 1;  // On either side.

/// As a reader counts letters: with their accents.
std::vector<QString> firstLetters(const QString& name) {
  std::vector<QString> letters;
  QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, name);
  for (qsizetype start = 0; letters.size() < kLetters;) {
    const qsizetype end = finder.toNextBoundary();
    if (end < 0) {
      break;
    }
    letters.push_back(name.mid(start, end - start));
    start = end;
  }
  return letters;
}

}  // namespace

QtModuleNameStatusBarView::QtModuleNameStatusBarView(PaintedWidget& widget) : FittingView(widget) {
  fit();
}

void QtModuleNameStatusBarView::setColorObject(VELColor* color) {
  if (color == nullptr) {
    color_.unbind();
  } else {
    color_.bind(color->statusLabelColor());
  }
}

void QtModuleNameStatusBarView::setThreeLetterName(std::string_view name) {
  QString changed = QString::fromUtf8(name.data(), static_cast<qsizetype>(name.size()));
  if (changed != name_) {
    name_ = std::move(changed);
    letters_ = firstLetters(name_);
    widget().setAccessibleName(name_);
    fit();
  }
}

void QtModuleNameStatusBarView::fit() {
  const QFontMetricsF metrics(letterFont(), &widget());
  double widest = 0.0;
  for (const QString& letter : letters_) {
    widest = std::max(widest, metrics.horizontalAdvance(letter));
  }
  fitWidth(widest > 0.0 ? static_cast<int>(std::ceil(widest)) + 2 * kMargin : 0);
}

QFont QtModuleNameStatusBarView::letterFont() const {
  QFont font = widget().font();
  font.setBold(true);
  font.setHintingPreference(QFont::PreferFullHinting);  // So small, every pixel counts.
  font.setPixelSize(100);
  const double capitalsShare = QFontMetricsF(font).capHeight() / 100.0;
  font.setPixelSize(static_cast<int>(std::lround(kLetterHeight / capitalsShare)));
  return font;
}

void QtModuleNameStatusBarView::paint(QPainter& painter) {
  const QFont font = letterFont();
  const QFontMetricsF metrics(font, &widget());
  const int count = static_cast<int>(letters_.size());
  const int height = count * (kLetterHeight + kGap) - kGap;
  int baseline = (widget().height() - height) / 2 + kLetterHeight;
  painter.setFont(font);
  painter.setPen(toQColor(color_.get()));
  for (const QString& letter : letters_) {
    const double unused = widget().width() - metrics.horizontalAdvance(letter);
    painter.drawText(QPointF(std::floor(unused / 2), baseline), letter);
    baseline += kLetterHeight + kGap;
  }
}

}  // namespace vel
