#include "host/desktop/ScreenWatcher.h"

#include <QGuiApplication>
#include <QScreen>
#include <utility>

namespace vel {

ScreenWatcher::ScreenWatcher(std::function<void()> changed) : changed_(std::move(changed)) {
  const auto others = [this] {
    watchAll();
    changed_();
  };
  connect(qApp, &QGuiApplication::primaryScreenChanged, this, others);
  connect(qApp, &QGuiApplication::screenAdded, this, others);
  connect(qApp, &QGuiApplication::screenRemoved, this, others);
  watchAll();
}

void ScreenWatcher::watchAll() {
  for (const auto& connection : std::exchange(connections_, {})) {
    disconnect(connection);
  }
  for (const QScreen* screen : QGuiApplication::screens()) {
    connections_.push_back(connect(screen, &QScreen::geometryChanged, this, changed_));
    connections_.push_back(connect(screen, &QScreen::availableGeometryChanged, this, changed_));
  }
}

}  // namespace vel
