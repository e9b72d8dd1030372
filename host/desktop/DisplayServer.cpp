#include "host/desktop/DisplayServer.h"

#include <xcb/xcb.h>

#include <QGuiApplication>
#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace vel {
namespace {

constexpr std::string_view kStrutPartial = "_NET_WM_STRUT_PARTIAL";
constexpr std::string_view kStrut = "_NET_WM_STRUT";

struct Free {
  void operator()(void* memory) const { std::free(memory); }
};

xcb_connection_t* connection() {
  const auto* application = qApp->nativeInterface<QNativeInterface::QX11Application>();
  return application != nullptr ? application->connection() : nullptr;
}

xcb_atom_t atom(xcb_connection_t* server, std::string_view name) {
  const auto cookie =
      xcb_intern_atom(server, 0, static_cast<std::uint16_t>(name.size()), name.data());
  const std::unique_ptr<xcb_intern_atom_reply_t, Free> reply(
      xcb_intern_atom_reply(server, cookie, nullptr));
  return reply ? reply->atom : static_cast<xcb_atom_t>(XCB_ATOM_NONE);
}

QRect rootWindow(xcb_connection_t* server) {
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(server)).data->root;
  const std::unique_ptr<xcb_get_geometry_reply_t, Free> reply(
      xcb_get_geometry_reply(server, xcb_get_geometry(server, root), nullptr));
  return reply ? QRect(0, 0, reply->width, reply->height) : QRect();
}

void setProperty(xcb_connection_t* server, const QWidget& window, std::string_view property,
                 xcb_atom_t type, const std::uint32_t* values, std::uint32_t count) {
  xcb_change_property(server, XCB_PROP_MODE_REPLACE, static_cast<xcb_window_t>(window.winId()),
                      atom(server, property), type, 32, count, values);
}

}  // namespace

bool isDisplayReachable() {
  xcb_connection_t* server = xcb_connect(nullptr, nullptr);
  const bool reachable = xcb_connection_has_error(server) == 0;
  xcb_disconnect(server);
  return reachable;
}

void makeDock(const QWidget& window) {
  xcb_connection_t* server = connection();
  if (server == nullptr) {
    return;
  }
  const std::uint32_t dock = atom(server, "_NET_WM_WINDOW_TYPE_DOCK");
  setProperty(server, window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, &dock, 1);
  const std::uint32_t everywhere = 0xFFFFFFFF;
  setProperty(server, window, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, &everywhere, 1);
  xcb_flush(server);
}

void keepOffTaskbars(const QWidget& window) {
  xcb_connection_t* server = connection();
  if (server == nullptr) {
    return;
  }
  // Qt adds its own when it shows the window.
  const std::array<std::uint32_t, 2> states{atom(server, "_NET_WM_STATE_SKIP_TASKBAR"),
                                            atom(server, "_NET_WM_STATE_SKIP_PAGER")};
  setProperty(server, window, "_NET_WM_STATE", XCB_ATOM_ATOM, states.data(), 2);
  xcb_flush(server);
}

void reserveEdge(const QWidget& window, Edge edge, int thickness, const QRect& screen) {
  xcb_connection_t* server = connection();
  if (server == nullptr) {
    return;
  }
  // left, right, top, bottom, then the start and the end of each along its edge. What is kept free
  // counts from the edge of the root window, which may be larger than all screens together.
  std::array<std::uint32_t, 12> strut{};
  const QRect root = rootWindow(server);
  const bool top = edge == Edge::top;
  const std::size_t side = top ? 2 : 3;
  const int kept = thickness + (top ? screen.top() : root.bottom() - screen.bottom());
  strut[side] = static_cast<std::uint32_t>(std::max(kept, 0));
  strut[4 + 2 * side] = static_cast<std::uint32_t>(screen.left());
  strut[5 + 2 * side] = static_cast<std::uint32_t>(std::min(screen.right(), root.right()));
  setProperty(server, window, kStrutPartial, XCB_ATOM_CARDINAL, strut.data(), 12);
  setProperty(server, window, kStrut, XCB_ATOM_CARDINAL, strut.data(), 4);
  xcb_flush(server);
}

void releaseEdge(const QWidget& window) {
  xcb_connection_t* server = connection();
  if (server == nullptr) {
    return;
  }
  for (const auto property : {kStrutPartial, kStrut}) {
    xcb_delete_property(server, static_cast<xcb_window_t>(window.winId()), atom(server, property));
  }
  xcb_flush(server);
}

std::string displayName() {
  char* host = nullptr;
  int number = 0;
  if (xcb_parse_display(nullptr, &host, &number, nullptr) == 0) {
    return {};
  }
  const std::unique_ptr<char, Free> owner(host);
  return std::string(host) + ":" + std::to_string(number);
}

}  // namespace vel
