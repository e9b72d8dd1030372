// An event as udev sends it when something about a display has changed.
#pragma once

#include <arpa/inet.h>
#include <linux/netlink.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cstdint>
#include <string_view>

namespace vel::test {

/// In network byte order where udev has it so (systemd, sd-device/device-monitor.c).
struct UdevMessage {
  std::array<char, 8> prefix{"libudev"};
  std::uint32_t magic = htonl(0xFEEDCAFE);
  std::uint32_t headerSize = 40;
  std::uint32_t propertiesOffset = 40;
  std::uint32_t propertiesSize = sizeof properties;
  std::uint32_t subsystemHash = htonl(0x16664179);  ///< MurmurHash2 of "drm"
  std::array<std::uint32_t, 3> otherFilters{};
  char properties[60] = "ACTION=change\0DEVPATH=/devices/card0\0SUBSYSTEM=drm\0SEQNUM=1";
};

/// Reaches whoever listens in this network namespace. False without CAP_NET_ADMIN there.
inline bool sendDisplayEvent() {
  const UdevMessage message;
  sockaddr_nl group{};
  group.nl_family = AF_NETLINK;
  group.nl_groups = 2;  // the kernel's own are 1
  const int socket = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_KOBJECT_UEVENT);
  const ssize_t sent = ::sendto(socket, &message, sizeof message, 0,
                                reinterpret_cast<const sockaddr*>(&group), sizeof group);
  ::close(socket);
  return sent == static_cast<ssize_t>(sizeof message);
}

}  // namespace vel::test
