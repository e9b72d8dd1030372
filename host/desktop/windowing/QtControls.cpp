#include "host/desktop/windowing/QtControls.h"

#include "host/desktop/windowing/WheelGuard.h"

#include <QAbstractButton>
#include <QEvent>
#include <QVariant>
#include <algorithm>

namespace vel {

QtButton::QtButton(QCheckBox& box) : QtControl(box), box_(box) {
  actAt(box, &QAbstractButton::clicked);
}

QtMatrix::QtMatrix(QWidget& widget, std::vector<Cell> cells)
    : QtControl(widget), cells_(std::move(cells)) {
  for (const Cell& cell : cells_) {
    group_.addButton(cell.button);
    actAt(*cell.button, &QAbstractButton::clicked);
  }
}

void QtMatrix::deselectAllCells() {
  if (QAbstractButton* selected = group_.checkedButton()) {
    group_.setExclusive(false);  // An exclusive group keeps its checked button.
    selected->setChecked(false);
    group_.setExclusive(true);
  }
}

void QtMatrix::selectCellWithTag(std::int64_t tag) {
  const auto cell = std::find_if(cells_.begin(), cells_.end(),
                                 [tag](const Cell& candidate) { return candidate.tag == tag; });
  if (cell != cells_.end()) {
    cell->button->setChecked(true);
  }
}

std::optional<std::int64_t> QtMatrix::selectedTag() const {
  const auto cell = std::find_if(cells_.begin(), cells_.end(), [](const Cell& candidate) {
    return candidate.button->isChecked();
  });
  return cell == cells_.end() ? std::nullopt : std::optional(cell->tag);
}

QtPopUpButton::QtPopUpButton(QComboBox& box, const std::vector<std::int64_t>& tags)
    : QtControl(box), box_(box) {
  for (int index = 0; index < box.count(); ++index) {
    box.setItemData(index, qlonglong(tags[std::size_t(index)]));
  }
  guardFromWheel(box);
  actAt(box, &QComboBox::activated);
}

void QtPopUpButton::selectItemWithTag(std::int64_t tag) {
  if (const int index = box_.findData(qlonglong(tag)); index >= 0) {
    box_.setCurrentIndex(index);
  }
}

std::optional<std::int64_t> QtPopUpButton::selectedTag() const {
  return box_.currentIndex() < 0 ? std::nullopt
                                 : std::optional<std::int64_t>(box_.currentData().toLongLong());
}

}  // namespace vel
