// The palettes, and when they are used.
#include "host/desktop/kit/Theme.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QProcess>
#include <QTest>
#include <cmath>
#include <utility>

namespace vel::test {

/// WCAG 2.1, "contrast ratio".
double contrast(const QPalette& palette, QPalette::ColorRole a, QPalette::ColorRole b) {
  const auto luminance = [&](QPalette::ColorRole role) {
    const auto linear = [](float c) {
      return c <= 0.03928 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
    };
    const QColor color = palette.color(role);
    return 0.2126 * linear(color.redF()) + 0.7152 * linear(color.greenF()) +
           0.0722 * linear(color.blueF()) + 0.05;
  };
  return std::max(luminance(a) / luminance(b), luminance(b) / luminance(a));
}

bool isDark() {
  return QApplication::palette().color(QPalette::Window).lightness() < 128;
}

TEST(Theme, EveryTextIsReadableWhateverTheAccent) {
  using P = QPalette;
  const std::pair<P::ColorRole, P::ColorRole> pairs[] = {
      {P::WindowText, P::Window},         {P::Text, P::AlternateBase}, {P::ButtonText, P::Button},
      {P::HighlightedText, P::Highlight}, {P::Link, P::Window},        {P::LinkVisited, P::Base}};
  for (const char* accent : {"#308cc6", "yellow", "black", "white"}) {
    for (const QPalette& palette : {lightPalette(accent), darkPalette(accent)}) {
      for (const auto& [text, background] : pairs) {
        EXPECT_GE(contrast(palette, text, background), 4.5)
            << accent << ": " << text << " on " << background;
      }
    }
  }
}

struct Portal : QDBusVirtualObject {
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QDBusVariant once(scheme);
    return message.member() == "Read" &&
           message.arguments() == QVariantList{"org.freedesktop.appearance", "color-scheme"} &&
           connection.send(
               message.createReply(QVariant::fromValue(QDBusVariant(QVariant::fromValue(once)))));
  }
  uint scheme = 0;
};

TEST(Theme, FollowsThePortal) {
  QProcess bus;
  bus.start("dbus-daemon", {"--session", "--nofork", "--print-address"});
  ASSERT_TRUE(bus.waitForReadyRead()) << "dbus-daemon is needed";
  const QByteArray address = bus.readLine().trimmed();
  qputenv("DBUS_SESSION_BUS_ADDRESS", address);

  QDBusConnection connection =
      QDBusConnection::connectToBus(QString::fromLatin1(address), "portal");
  Portal portal;
  portal.scheme = 1;
  const QString path = "/org/freedesktop/portal/desktop";
  ASSERT_TRUE(connection.registerVirtualObject(path, &portal));
  ASSERT_TRUE(connection.registerService("org.freedesktop.portal.Desktop"));
  const auto announce = [&](uint scheme, const char* group = "org.freedesktop.appearance") {
    QDBusMessage signal =
        QDBusMessage::createSignal(path, "org.freedesktop.portal.Settings", "SettingChanged");
    signal << group << "color-scheme" << QVariant::fromValue(QDBusVariant(scheme));
    connection.send(signal);
  };
  const auto turns = [](bool dark) { return QTest::qWaitFor([=] { return isDark() == dark; }); };

  ASSERT_FALSE(isDark());
  const QPalette desktops = QApplication::palette();
  Theme theme;
  EXPECT_TRUE(turns(true)) << "as the portal has answered";
  announce(2, "org.example.other");
  announce(2);
  EXPECT_TRUE(turns(false));
  EXPECT_EQ(QApplication::palette(), desktops) << "it is light enough";

  theme.setAppearance(Appearance::dark);
  EXPECT_TRUE(isDark());
  theme.setAppearance(Appearance::light);
  EXPECT_FALSE(isDark());
  EXPECT_NE(QApplication::palette(), desktops);
  announce(1);
  theme.setAppearance(Appearance::followDesktop);
  EXPECT_TRUE(turns(true));
  announce(0);
  EXPECT_TRUE(turns(false));

  QDBusConnection::disconnectFromBus("portal");
  bus.terminate();
  bus.waitForFinished();
}

}  // namespace vel::test
