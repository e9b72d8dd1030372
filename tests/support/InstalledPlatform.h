// Everything that the module needs around it, installed for as long as it lives.
#pragma once

#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "platform/Platform.h"
#include "platform/foundation/MainQueue.h"

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

template <typename AnyKernel, typename AnyClock>
struct InstalledPlatform {
  template <typename... Roots>
  explicit InstalledPlatform(const Roots&... roots) : kernel(roots...) {}

  AnyKernel kernel;
  AnyClock clock;
  NotificationCenter notificationCenter;
  MainQueue queue;
  Locale locale;
  Bundle bundle = moduleBundle();
  Bundle mainBundle = openBundle(VEL_HOST_RESOURCES);
  Platform platform{kernel, clock, notificationCenter, queue, queue, locale, mainBundle, {}};
  PlatformInstallation installation{platform};
};

}  // namespace vel::test
