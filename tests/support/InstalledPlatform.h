// Everything that the module needs around it, installed for as long as it lives.
#pragma once

#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "platform/foundation/MainQueue.h"
#include "platform/headless/HeadlessNib.h"
#include "platform/headless/HeadlessUserNotifications.h"
#include "platform/headless/HeadlessWorkspace.h"
#include "support/ScriptedGraphics.h"

namespace vel::test {

/// A bundle of the source tree, without a translation unless a language is asked for.
inline Bundle openBundle(const char* directory, std::vector<std::string> languages = {}) {
  std::vector<Bundle::Problem> problems;
  auto bundle = Bundle::open(directory, Locale(".", std::move(languages)), problems);
  if (!bundle || !problems.empty()) {
    throw std::runtime_error(problems.empty() ? "no bundle" : problems.front());
  }
  return *std::move(bundle);
}

inline Bundle moduleBundle(std::vector<std::string> languages = {}) {
  return openBundle(VEL_MODULE_RESOURCES, std::move(languages));
}

/// Shows the tests the nib that was loaded last, which belongs to whoever loaded it.
class ObservedNibLoader : public HeadlessNibLoader {
 public:
  using HeadlessNibLoader::HeadlessNibLoader;

  std::unique_ptr<Nib> load(const Bundle& bundle, const std::string& name) override {
    auto nib = HeadlessNibLoader::load(bundle, name);
    loaded = nib.get();
    return nib;
  }

  /// An object of that nib; one that is not there fails the test by an exception.
  template <typename T>
  T& object(std::string_view name) {
    T* object = loaded == nullptr ? nullptr : loaded->outlet<T>(name);
    return object == nullptr ? throw std::runtime_error("no " + std::string(name)) : *object;
  }

  Nib* loaded = nullptr;
};

template <typename AnyKernel, typename AnyClock>
struct InstalledPlatform {
  template <typename... Roots>
  explicit InstalledPlatform(const Roots&... roots) : kernel(roots...) {}

  AnyKernel kernel;
  ScriptedSwitchingDriver switchingDriver;
  ScriptedDisplays displays;
  AnyClock clock;
  std::vector<std::string> nibProblems;
  ObservedNibLoader nibLoader{
      [this](std::string problem) { nibProblems.push_back(std::move(problem)); }};
  HeadlessWorkspace workspace;
  HeadlessUserNotificationCenter userNotificationCenter;
  NotificationCenter notificationCenter;
  MainQueue queue;
  Locale locale;
  Bundle bundle = moduleBundle();
  Bundle mainBundle = openBundle(VEL_HOST_RESOURCES);
  Platform platformWith(Queue& global) {
    Platform result{kernel,
                    switchingDriver,
                    displays,
                    clock,
                    nibLoader,
                    workspace,
                    userNotificationCenter,
                    notificationCenter,
                    queue,
                    global,
                    locale,
                    mainBundle,
                    {}};
    return result;
  }
  Platform platform = platformWith(queue);
  PlatformInstallation installation{platform};
};

}  // namespace vel::test
