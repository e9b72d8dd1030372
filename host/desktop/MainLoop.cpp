#include "host/desktop/MainLoop.h"

#include <QCoreApplication>
#include <utility>

namespace vel {

MainLoop::MainLoop(ModuleSession& session, Signals& signals, std::function<void()> updated)
    : session_(session),
      updated_(std::move(updated)),
      tasks_(session.wake().descriptor(), QSocketNotifier::Read),
      signals_(signals.descriptor(), QSocketNotifier::Read) {
  QObject::connect(&tasks_, &QSocketNotifier::activated, &tasks_, [this] {
    session_.wake().acknowledge();
    session_.mainQueue().drain();
    updated_();
  });
  QObject::connect(&signals_, &QSocketNotifier::activated, &signals_, [&signals] {
    while (signals.next()) {
      QCoreApplication::quit();
    }
  });
}

void MainLoop::refreshEvery(std::int64_t milliseconds) {
  beats_.reset();
  timer_.emplace(static_cast<double>(milliseconds) / 1000.0);
  beats_ = std::make_unique<QSocketNotifier>(timer_->descriptor(), QSocketNotifier::Read);
  QObject::connect(beats_.get(), &QSocketNotifier::activated, beats_.get(), [this] { refresh(); });
}

void MainLoop::refresh() {
  timer_->acknowledge();
  session_.module().updateModel();
  // A changed number of gauges comes before their values.
  session_.mainQueue().drain();
  session_.module().updateViews();
  updated_();
}

}  // namespace vel
