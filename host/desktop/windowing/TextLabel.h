// A label whose plain text ends in an ellipsis where it does not fit.
#pragma once

#include <QFont>
#include <QLabel>
#include <QPaintEvent>
#include <QStaticText>
#include <QString>

namespace vel {

/// Elides what is in Qt::PlainText and does not wrap; else as any label, and so is the caption of a
/// control, in which an ampersand marks a key.
class TextLabel : public QLabel {
 public:
  using QLabel::QLabel;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void set(const QString& text, int width);

  /// As it was set last, and what of.
  QStaticText set_;
  QString text_;
  QFont font_;
  int width_ = -1;
};

}  // namespace vel
