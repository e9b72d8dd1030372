// velbar: the start-up of the desktop host.
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <functional>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "host/InstalledFiles.h"
#include "host/Report.h"
#include "host/Signals.h"
#include "host/StandardFiles.h"
#include "host/desktop/DesktopApplication.h"
#include "host/desktop/DesktopHost.h"
#include "host/desktop/DisplayServer.h"
#include "host/desktop/Options.h"
#include "host/desktop/SingleInstance.h"
#include "host/desktop/Snapshot.h"
#include "host/desktop/Texts.h"
#include "host/desktop/kit/DescribeProcess.h"
#include "host/desktop/kit/EndRequest.h"
#include "host/desktop/kit/Kit.h"
#include "host/desktop/kit/Theme.h"
#include "host/desktop/windowing/QtNib.h"
#include "host/desktop/workspace/DesktopWorkspace.h"
#include "host/notifications/DesktopNotifications.h"
#include "host/session/ModuleSession.h"
#include "host/store/SettingsPath.h"
#include "host/store/SettingsStore.h"

namespace vel {
namespace {

constexpr const char* kProgram = "velbar";
constexpr const char* kOpenPreferences = "preferences";
constexpr const char* kOpenPanel = "panel";
constexpr const char* kBringUp = "show";

int answer(const CommandLineAnswer& answer) {
  if (answer.status != 0) {
    report(kProgram, answer.text);
    return answer.status;
  }
  if (std::fputs(answer.text.c_str(), stdout) == EOF || std::fflush(stdout) == EOF) {
    throw std::system_error(errno, std::generic_category(), "standard output");
  }
  return 0;
}

/// With the options that both know.
[[noreturn]] void startInTerminal(const DesktopOptions& options) {
  report(kProgram, "no display can be reached, starting in the terminal");
  const std::string program = installedPath(VEL_TERMINAL_HOST);
  std::vector<std::string> arguments{program, "--proc", options.proc, "--sys", options.sys};
  if (options.interval) {
    arguments.insert(arguments.end(), {"--interval", std::to_string(*options.interval)});
  }
  if (!options.bundle.empty()) {
    arguments.insert(arguments.end(), {"--bundle", options.bundle});
  }
  if (!options.debugfs.empty()) {
    arguments.insert(arguments.end(), {"--debugfs", options.debugfs});
  }
  const auto flags = options.switchingFlags();
  arguments.insert(arguments.end(), flags.begin(), flags.end());
  std::vector<char*> pointers(arguments.size() + 1);
  std::transform(arguments.begin(), arguments.end(), pointers.begin(),
                 [](std::string& argument) { return argument.data(); });
  execv(program.c_str(), pointers.data());
  throw std::system_error(errno, std::generic_category(), program);
}

/// To both: who has started it from a menu sees no standard error.
std::function<void(const SwitchingHint&)> hintTeller(UserNotificationCenter* notifications) {
  return [notifications](const SwitchingHint& hint) {
    report(kProgram, hint.report);
    if (notifications != nullptr) {
      notifications->deliverNotification(hint.notification);
    }
  };
}

ModuleSession makeSession(const DesktopOptions& options, std::vector<std::string> arguments,
                          const Locale& locale, const Bundle* hostBundle, Workspace& workspace,
                          UserNotificationCenter* notifications, OfferEnding offerEnding,
                          DescribeProcess describeProcess) {
  return {kProgram,
          options,
          std::move(arguments),
          locale,
          hostBundle,
          {[offerEnding = std::move(offerEnding),
            describeProcess = std::move(describeProcess)](auto problem) {
             auto loader = std::make_unique<QtNibLoader>(std::move(problem));
             registerKit(*loader, offerEnding, describeProcess);
             return loader;
           },
           workspace, notifications, hintTeller(notifications)}};
}

/// What the one that runs already has been asked to do.
int tellFirst(const SingleInstance& instance, const DesktopOptions& options) {
  const bool told = instance.tell(options.preferences ? kOpenPreferences
                                  : options.panel     ? kOpenPanel
                                                      : kBringUp);
  const auto flags = options.switchingFlags();
  report(kProgram, std::string("already running") + (told ? "" : ", but does not answer") +
                       (flags.empty() ? "" : "; " + flags.front() + " has no effect on it"));
  return told ? 0 : 1;
}

int showOnDesktop(const DesktopOptions& options, std::vector<std::string> arguments) {
  SingleInstance instance((options.widget ? "widget" : "bar") + displayName());
  if (!instance.isFirst()) {
    return tellFirst(instance, options);
  }
  // Before the first thread, which inherits what is blocked.
  Signals signals{SIGINT, SIGTERM, SIGHUP};
  const DesktopApplication application(kProgram, DesktopApplication::Platform::display);

  const Locale locale = Locale::current();
  const auto hostBundle = openHostBundle(kProgram, locale);
  const Bundle* bundle = hostBundle ? &*hostBundle : nullptr;
  const Texts texts(bundle);
  Theme theme;
  DesktopWorkspace workspace(bundle);
  GlobalQueue writing(1);
  SettingsStore store(settingsPath(), writing,
                      [](const std::string& message) { report(kProgram, message); });
  DesktopNotifications notifications([](const std::string& message) { report(kProgram, message); });
  OfferEnding offerEnding;
  DescribeProcess describeProcess;
  ModuleSession session = makeSession(
      options, std::move(arguments), locale, bundle, workspace, &notifications,
      [&offerEnding](const EndRequest& request) { offerEnding(request); },
      [&describeProcess](std::int64_t pid) {
        return describeProcess ? describeProcess(pid) : QString();
      });
  DesktopHost host(options, session, store, texts, locale, theme, signals);
  offerEnding = [&host](const EndRequest& request) { host.offerEnding(request); };
  describeProcess = [&host](std::int64_t pid) { return host.describeProcess(pid); };
  const InstanceListener listener(instance, [&host](std::string_view word) {
    if (word == kOpenPreferences) {
      host.openPreferences();
    } else if (word == kOpenPanel) {
      host.openPanel();
    } else if (word == kBringUp) {
      host.bringUp();
    }
  });
  host.run();
  return 0;
}

int snapshot(const DesktopOptions& options, std::vector<std::string> arguments) {
  const DesktopApplication application(kProgram, DesktopApplication::Platform::offscreen);
  const Locale locale = Locale::current();
  const auto hostBundle = openHostBundle(kProgram, locale);
  const Bundle* bundle = hostBundle ? &*hostBundle : nullptr;
  Theme theme;
  DesktopWorkspace workspace(bundle);
  ModuleSession session =
      makeSession(options, std::move(arguments), locale, bundle, workspace, nullptr, {}, {});
  session.initMainApp();
  takeSnapshots(*options.snapshots, session, Texts(bundle), theme);
  return 0;
}

int run(int argc, const char* const* argv) {
  DesktopOptions options;
  if (const auto reply = parseDesktopOptions(argc, argv, VEL_VERSION, options)) {
    return answer(*reply);
  }
  if (!options.snapshots && !isDisplayReachable()) {
    startInTerminal(options);
  }
  // Not before: who writes on standard output has to find it closed.
  prepareStandardFiles();
  std::vector<std::string> arguments(argv, argv + argc);
  return options.snapshots ? snapshot(options, std::move(arguments))
                           : showOnDesktop(options, std::move(arguments));
}

}  // namespace
}  // namespace vel

int main(int argc, char** argv) {
  try {
    return vel::run(argc, argv);
  } catch (const std::exception& error) {
    vel::report(vel::kProgram, error.what());
    return 1;
  }
}
