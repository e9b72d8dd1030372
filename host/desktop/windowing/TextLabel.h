// A label whose plain text ends in an ellipsis where it does not fit.
#pragma once

#include <QLabel>
#include <QPaintEvent>

namespace vel {

/// Elides what is in Qt::PlainText and does not wrap; else as any label, and so is the caption of a
/// control, in which an ampersand marks a key.
class TextLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override;
};

}  // namespace vel
