#include "host/desktop/kit/Theme.h"

#include <QApplication>
#include <QColor>

#include "host/desktop/kit/Contrast.h"

namespace vel {

namespace {

struct Shades {
  QColor window;
  QColor base;
  QColor alternateBase;
  QColor button;
  QColor text;
  QColor faintText;  ///< of what is disabled or stands for a text to come
  QColor toolTip;
  QColor light;
  QColor midlight;
  QColor mid;
  QColor dark;
  QColor shadow;
};

QPalette makePalette(const Shades& shades, QColor accent) {
  if (accent.hsvSaturation() < 40) {
    accent = QColor(0x2f, 0x7f, 0xe0);
  }
  const QColor highlight = readableOn(Qt::white, accent);
  QPalette palette;
  palette.setColor(QPalette::Window, shades.window);
  palette.setColor(QPalette::WindowText, shades.text);
  palette.setColor(QPalette::Base, shades.base);
  palette.setColor(QPalette::AlternateBase, shades.alternateBase);
  palette.setColor(QPalette::Text, shades.text);
  palette.setColor(QPalette::PlaceholderText, shades.faintText);
  palette.setColor(QPalette::Button, shades.button);
  palette.setColor(QPalette::ButtonText, shades.text);
  palette.setColor(QPalette::BrightText, Qt::white);
  palette.setColor(QPalette::ToolTipBase, shades.toolTip);
  palette.setColor(QPalette::ToolTipText, shades.text);
  palette.setColor(QPalette::Highlight, highlight);
  palette.setColor(QPalette::HighlightedText, Qt::white);
  palette.setColor(QPalette::Link, readableOn(shades.window, accent));
  palette.setColor(QPalette::LinkVisited, readableOn(shades.window, accent));
  palette.setColor(QPalette::Light, shades.light);
  palette.setColor(QPalette::Midlight, shades.midlight);
  palette.setColor(QPalette::Mid, shades.mid);
  palette.setColor(QPalette::Dark, shades.dark);
  palette.setColor(QPalette::Shadow, shades.shadow);
  for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText}) {
    palette.setColor(QPalette::Disabled, role, shades.faintText);
  }
  palette.setColor(QPalette::Disabled, QPalette::Highlight, shades.mid);
  palette.setColor(QPalette::Disabled, QPalette::HighlightedText, shades.faintText);
  return palette;
}

bool isDark(const QPalette& palette) {
  return palette.color(QPalette::Window).lightnessF() < 0.5F;
}

}  // namespace

QPalette lightPalette(const QColor& accent) {
  return makePalette({.window = QColor(0xf4, 0xf5, 0xf6),
                      .base = QColor(0xff, 0xff, 0xff),
                      .alternateBase = QColor(0xf0, 0xf2, 0xf4),
                      .button = QColor(0xee, 0xef, 0xf1),
                      .text = QColor(0x20, 0x23, 0x27),
                      .faintText = QColor(0x87, 0x8c, 0x93),
                      .toolTip = QColor(0xff, 0xff, 0xff),
                      .light = QColor(0xff, 0xff, 0xff),
                      .midlight = QColor(0xe6, 0xe8, 0xea),
                      .mid = QColor(0xb9, 0xbd, 0xc2),
                      .dark = QColor(0x9a, 0x9f, 0xa6),
                      .shadow = QColor(0x6a, 0x6f, 0x76)},
                     accent);
}

QPalette darkPalette(const QColor& accent) {
  return makePalette({.window = QColor(0x28, 0x2a, 0x2e),
                      .base = QColor(0x1e, 0x20, 0x23),
                      .alternateBase = QColor(0x25, 0x27, 0x2b),
                      .button = QColor(0x36, 0x39, 0x3e),
                      .text = QColor(0xee, 0xef, 0xf1),
                      .faintText = QColor(0x8a, 0x8f, 0x97),
                      .toolTip = QColor(0x36, 0x39, 0x3e),
                      .light = QColor(0x4c, 0x50, 0x57),
                      .midlight = QColor(0x41, 0x45, 0x4b),
                      .mid = QColor(0x45, 0x49, 0x50),
                      .dark = QColor(0x18, 0x1a, 0x1c),
                      .shadow = QColor(0x0c, 0x0d, 0x0e)},
                     accent);
}

Theme::Theme() : desktop_([this] { apply(); }) {}

void Theme::setAppearance(Appearance appearance) {
  if (appearance != appearance_) {
    appearance_ = appearance;
    apply();
  }
}

void Theme::apply() {
  QApplication::setPalette(QPalette());  // Back to the desktop's, which may have changed meanwhile.
  const QPalette desktop = QApplication::palette();
  const ColorScheme wanted = appearance_ == Appearance::dark    ? ColorScheme::dark
                             : appearance_ == Appearance::light ? ColorScheme::light
                                                                : desktop_.value();
  const bool always = appearance_ != Appearance::followDesktop;
  const QColor accent = desktop.color(QPalette::Highlight);
  if (wanted == ColorScheme::dark && (always || !isDark(desktop))) {
    QApplication::setPalette(darkPalette(accent));
  } else if (wanted == ColorScheme::light && (always || isDark(desktop))) {
    QApplication::setPalette(lightPalette(accent));
  }
}

}  // namespace vel
