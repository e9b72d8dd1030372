// Whether the user prefers dark or light programs, as the desktop's portal knows it.
#pragma once

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <QVariant>
#include <cstdint>
#include <functional>

namespace vel {

enum class ColorScheme : std::uint8_t { noPreference, dark, light };

/// Reads the key "color-scheme" of the portal's Settings interface (org.freedesktop.appearance) and
/// follows it, without ever waiting for it. Without a session bus or a portal there is no
/// preference.
class DesktopColorScheme : public QObject {
  Q_OBJECT

 public:
  explicit DesktopColorScheme(std::function<void()> didChange);

  [[nodiscard]] ColorScheme value() const { return value_; }

 private:
  Q_SLOT void settingChanged(const QDBusMessage& message);
  void receive(QDBusPendingCallWatcher& reply);
  void set(const QVariant& portalValue);

  std::function<void()> didChange_;
  ColorScheme value_ = ColorScheme::noPreference;
};

}  // namespace vel
