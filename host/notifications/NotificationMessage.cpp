#include "host/notifications/NotificationMessage.h"

#include <algorithm>
#include <cstdint>
#include <string_view>

#include "host/notifications/NotificationText.h"

namespace vel {
namespace {

constexpr const char* kDestination = "org.freedesktop.Notifications";
constexpr const char* kPath = "/org/freedesktop/Notifications";
constexpr const char* kApplicationName = "Velbar";
/// Names both the icon and the desktop entry.
constexpr const char* kApplicationId = "org.velbar.Velbar";
constexpr const char* kActionKey = "close";
/// Of the sound naming convention of freedesktop.org.
constexpr const char* kAlertSound = "dialog-warning";
constexpr std::uint8_t kNormalUrgency = 1;
constexpr std::uint32_t kReplacesNone = 0;
constexpr std::int32_t kExpiryOfServer = -1;

SessionBus::Message methodCall(SessionBus& bus, const char* method) {
  sd_bus_message* message = nullptr;
  SessionBus::require(sd_bus_message_new_method_call(bus.get(), &message, kDestination, kPath,
                                                     kDestination, method));
  return SessionBus::Message(message);
}

void append(sd_bus_message* message, const char* types, auto... values) {
  SessionBus::require(sd_bus_message_append(message, types, values...));
}

void appendActions(sd_bus_message* message, const std::string* title) {
  if (title == nullptr) {
    append(message, "as", 0U);
  } else {
    append(message, "as", 2U, kActionKey, notificationText(*title).c_str());
  }
}

void appendHints(sd_bus_message* message, bool withSound) {
  SessionBus::require(sd_bus_message_open_container(message, 'a', "{sv}"));
  append(message, "{sv}", "urgency", "y", int{kNormalUrgency});
  append(message, "{sv}", "desktop-entry", "s", kApplicationId);
  if (withSound) {
    append(message, "{sv}", "sound-name", "s", kAlertSound);
  }
  SessionBus::require(sd_bus_message_close_container(message));
}

}  // namespace

std::vector<std::string> notificationCapabilities(SessionBus& bus) {
  const auto reply = bus.call(methodCall(bus, "GetCapabilities").get());
  std::vector<std::string> capabilities;
  SessionBus::require(sd_bus_message_enter_container(reply.get(), 'a', "s"));
  const char* capability = nullptr;
  while (SessionBus::require(sd_bus_message_read(reply.get(), "s", &capability)) > 0) {
    capabilities.emplace_back(capability);
  }
  return capabilities;
}

void showNotification(SessionBus& bus, const UserNotification& notification,
                      const std::vector<std::string>& capabilities) {
  const auto can = [&capabilities](std::string_view name) {
    return std::find(capabilities.begin(), capabilities.end(), name) != capabilities.end();
  };
  const std::string title = notificationText(notification.title);
  const std::string text = notificationText(notification.informativeText);
  const std::string body = can("body-markup") ? withEscapedMarkup(text) : text;
  const auto& action = notification.actionButtonTitle;

  const auto message = methodCall(bus, "Notify");
  append(message.get(), "susss", kApplicationName, kReplacesNone, kApplicationId, title.c_str(),
         body.c_str());
  appendActions(message.get(), action && can("actions") ? &*action : nullptr);
  appendHints(message.get(), notification.hasDefaultSound && can("sound"));
  append(message.get(), "i", kExpiryOfServer);
  bus.call(message.get());
}

}  // namespace vel
