#include "platform/linux/graphics/DisplayEvents.h"

#include <pthread.h>

#include <algorithm>
#include <csignal>
#include <system_error>

namespace vel {
namespace {

/// The events do not say which display it is.
constexpr std::uint32_t kAnyDisplay = 0;

/// What is started meanwhile has every signal blocked: they are for the program's other threads.
class BlockedSignals {
 public:
  BlockedSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, &before_);
  }
  ~BlockedSignals() { pthread_sigmask(SIG_SETMASK, &before_, nullptr); }
  BlockedSignals(const BlockedSignals&) = delete;
  BlockedSignals& operator=(const BlockedSignals&) = delete;

 private:
  sigset_t before_{};
};

}  // namespace

DisplayEvents::Watch::~Watch() {
  source.end();
  if (thread.joinable()) {
    thread.join();
  }
}

DisplayEvents::~DisplayEvents() {
  // As below.
  std::unique_ptr<Watch> ended;
  const std::lock_guard lock(mutex_);
  ended = std::move(watch_);
}

void DisplayEvents::add(Displays::ReconfigurationCallback callback, void* userInfo) {
  const std::lock_guard lock(mutex_);
  const Registration registration(callback, userInfo);
  if (isRegistered(registration)) {
    return;
  }
  registrations_.push_back(registration);
  if (!watch_) {
    startWatch();
  }
}

void DisplayEvents::remove(Displays::ReconfigurationCallback callback, void* userInfo) {
  // Goes after the lock, which its thread may need to end.
  std::unique_ptr<Watch> ended;
  std::unique_lock lock(mutex_);
  const Registration registration(callback, userInfo);
  std::erase(registrations_, registration);
  if (registrations_.empty()) {
    ended = std::move(watch_);
  }
  returned_.wait(
      lock, [&] { return std::find(calls_.begin(), calls_.end(), registration) == calls_.end(); });
}

void DisplayEvents::startWatch() {
  auto watch = std::make_unique<Watch>(timing_);
  if (!watch->source.isReceiving()) {
    return;
  }
  try {
    const BlockedSignals blocked;
    watch->thread = std::thread([this, &watch = *watch] { run(watch); });
    pthread_setname_np(watch->thread.native_handle(), "displays");
    watch_ = std::move(watch);
  } catch (const std::system_error&) {
    // No thread to be had; whoever registers next tries again.
  }
}

void DisplayEvents::run(Watch& watch) {
  while (watch.source.wait()) {
    callAll(watch);
  }
}

void DisplayEvents::callAll(const Watch& watch) {
  std::unique_lock lock(mutex_);
  const std::vector<Registration> all = registrations_;
  for (const Registration& registration : all) {
    // Removed by now, or the watch is one that ends.
    if (watch_.get() != &watch || !isRegistered(registration)) {
      continue;
    }
    calls_.push_back(registration);
    lock.unlock();
    const auto& [callback, userInfo] = registration;
    callback(kAnyDisplay, Displays::kSetModeFlag, userInfo);
    lock.lock();
    calls_.erase(std::find(calls_.begin(), calls_.end(), registration));
    returned_.notify_all();
  }
}

bool DisplayEvents::isRegistered(const Registration& registration) const {
  return std::find(registrations_.begin(), registrations_.end(), registration) !=
         registrations_.end();
}

}  // namespace vel
