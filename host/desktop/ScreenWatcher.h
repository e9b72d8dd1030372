// Tells when the screens change.
#pragma once

#include <QMetaObject>
#include <QObject>
#include <functional>
#include <vector>

namespace vel {

/// Calls its function after a screen has come or gone, has become the primary one, or has changed
/// its place, its size or the room that bars leave on it.
class ScreenWatcher : public QObject {
 public:
  explicit ScreenWatcher(std::function<void()> changed);

 private:
  void watchAll();

  const std::function<void()> changed_;
  std::vector<QMetaObject::Connection> connections_;
};

}  // namespace vel
