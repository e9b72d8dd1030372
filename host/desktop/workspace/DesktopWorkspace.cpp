#include "host/desktop/workspace/DesktopWorkspace.h"

#include <algorithm>
#include <array>
#include <utility>

#include "host/desktop/workspace/Utilities.h"

namespace vel {
namespace {

struct Kind {
  std::string_view path;
  std::optional<Application> Utilities::*application;
  std::string_view reasonIfNone;
  const char* usualIcon;
};

constexpr std::array kKinds = {
    Kind{"/Applications/Utilities/Activity Monitor.app", &Utilities::systemMonitor,
         "No system monitor is installed", "utilities-system-monitor"},
    Kind{"/Applications/Utilities/Console.app", &Utilities::logViewer, "No log viewer is installed",
         "utilities-log-viewer"},
    Kind{"/Applications/Utilities/Terminal.app", &Utilities::terminal, "No terminal is installed",
         "utilities-terminal"},
};

const Kind* kindOf(std::string_view path) {
  const auto* kind =
      std::find_if(kKinds.begin(), kKinds.end(), [&](const Kind& it) { return it.path == path; });
  return kind == kKinds.end() ? nullptr : kind;
}

constexpr double kSecondsOfUse = 1;

}  // namespace

DesktopWorkspace::DesktopWorkspace(const Bundle* texts, std::unique_ptr<const Clock> clock)
    : texts_(texts), clock_(std::move(clock)) {}

DesktopWorkspace::~DesktopWorkspace() = default;

const Utilities& DesktopWorkspace::utilities() {
  const double age = clock_->now() - foundAt_;
  if (!found_ || age < 0 || age >= kSecondsOfUse) {
    found_ = std::make_unique<const Utilities>(Utilities::find());
    foundAt_ = clock_->now();
  }
  return *found_;
}

std::optional<Image> DesktopWorkspace::iconForFile(const std::string& path) {
  const Kind* kind = kindOf(path);
  if (kind == nullptr) {
    return std::nullopt;
  }
  const auto& application = utilities().*kind->application;
  if (!application) {
    return std::nullopt;
  }
  return Image{application->icon().value_or(kind->usualIcon)};
}

Workspace::Opener DesktopWorkspace::openerOfFile(const std::string& path) {
  const Kind* kind = kindOf(path);
  if (kind == nullptr) {
    return {};
  }
  if (const auto& application = utilities().*kind->application) {
    return {true, application->displayName()};
  }
  return {false, std::string(texts_ == nullptr ? kind->reasonIfNone
                                               : texts_->localizedString(kind->reasonIfNone))};
}

bool DesktopWorkspace::openFile(const std::string& path) {
  const Kind* kind = kindOf(path);
  if (kind == nullptr) {
    return false;
  }
  const auto& application = utilities().*kind->application;
  return application && application->launch();
}

}  // namespace vel
