#include "host/desktop/kit/DesktopColorScheme.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <utility>

namespace vel {

namespace {

constexpr const char* kService = "org.freedesktop.portal.Desktop";
constexpr const char* kPath = "/org/freedesktop/portal/desktop";
constexpr const char* kInterface = "org.freedesktop.portal.Settings";
const QString kGroup = QStringLiteral("org.freedesktop.appearance");
const QString kKey = QStringLiteral("color-scheme");

/// Asked before the bus is: the D-Bus library would start one where there is none, and Qt a thread
/// that waits for it.
bool hasSessionBus() {
  return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
         QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + "/bus");
}

}  // namespace

DesktopColorScheme::DesktopColorScheme(std::function<void()> didChange)
    : didChange_(std::move(didChange)) {
  if (!hasSessionBus()) {
    return;
  }
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return;
  }
  bus.connect(kService, kPath, kInterface, "SettingChanged", this,
              SLOT(settingChanged(QDBusMessage)));
  // Not ReadOne, which older portals do not have.
  QDBusMessage call = QDBusMessage::createMethodCall(kService, kPath, kInterface, "Read");
  call << kGroup << kKey;
  auto watcher = std::make_unique<QDBusPendingCallWatcher>(bus.asyncCall(call), this);
  connect(watcher.get(), &QDBusPendingCallWatcher::finished, this,
          [this](QDBusPendingCallWatcher* reply) { receive(*reply); });
  static_cast<void>(watcher.release());  // Ours as a child.
}

void DesktopColorScheme::receive(QDBusPendingCallWatcher& reply) {
  const QDBusPendingReply<QDBusVariant> value = reply;
  if (value.isValid()) {
    set(value.value().variant());
  }
  reply.deleteLater();
}

void DesktopColorScheme::settingChanged(const QDBusMessage& message) {
  const QVariantList arguments = message.arguments();
  if (arguments.size() == 3 && arguments[0] == kGroup && arguments[1] == kKey) {
    set(arguments[2]);
  }
}

void DesktopColorScheme::set(const QVariant& portalValue) {
  // Read wraps its answer twice, SettingChanged once.
  QVariant plain = portalValue;
  while (plain.canConvert<QDBusVariant>()) {
    plain = plain.value<QDBusVariant>().variant();
  }
  const uint number = plain.toUInt();
  const ColorScheme scheme = number == 1   ? ColorScheme::dark
                             : number == 2 ? ColorScheme::light
                                           : ColorScheme::noPreference;
  if (scheme != value_) {
    value_ = scheme;
    didChange_();
  }
}

}  // namespace vel
