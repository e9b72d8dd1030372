#include "host/desktop/MainLoop.h"

#include <QCoreApplication>
#include <utility>

namespace vel {
namespace {

/// Between two samples that are near each other: some forty ticks of each processor.
constexpr int kSoon = 400;  // milliseconds

}  // namespace

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
  second_.setSingleShot(true);
  QObject::connect(&second_, &QTimer::timeout, &second_, [this] { refreshEvery(interval_); });
  QObject::connect(&signals_, &QSocketNotifier::activated, &signals_, [&signals] {
    while (signals.next()) {
      QCoreApplication::quit();
    }
  });
}

void MainLoop::refreshEvery(std::int64_t milliseconds) {
  second_.stop();
  interval_ = milliseconds;
  beats_.reset();
  timer_.emplace(static_cast<double>(milliseconds) / 1000.0);
  beats_ = std::make_unique<QSocketNotifier>(timer_->descriptor(), QSocketNotifier::Read);
  QObject::connect(beats_.get(), &QSocketNotifier::activated, beats_.get(), [this] { beat(); });
}

void MainLoop::refreshTwice() {
  refresh();
  // A beat in between would leave it less than that to compare with.
  beats_.reset();
  second_.start(kSoon);
}

void MainLoop::beat() {
  timer_->acknowledge();
  refresh();
}

void MainLoop::refresh() {
  session_.module().updateModel();
  // A changed number of gauges comes before their values.
  session_.mainQueue().drain();
  session_.module().updateViews();
  updated_();
}

}  // namespace vel
