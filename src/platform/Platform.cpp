#include "platform/Platform.h"

#include <cassert>

namespace vel {
namespace {

Platform* installed = nullptr;

}  // namespace

Platform& Platform::current() {
  assert(installed != nullptr);
  return *installed;
}

PlatformInstallation::PlatformInstallation(Platform& platform) : previous_(installed) {
  installed = &platform;
}

PlatformInstallation::~PlatformInstallation() {
  installed = previous_;
}

}  // namespace vel
