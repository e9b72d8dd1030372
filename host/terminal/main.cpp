// velbar-tty: the start-up of the terminal host.
#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <clocale>
#include <csignal>
#include <exception>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/HostSettings.h"
#include "host/Report.h"
#include "host/Signals.h"
#include "host/StandardFiles.h"
#include "host/notifications/DesktopNotifications.h"
#include "host/session/ModuleSession.h"
#include "host/store/SettingsPath.h"
#include "host/store/SettingsStore.h"
#include "host/terminal/Content.h"
#include "host/terminal/DeferredReports.h"
#include "host/terminal/EndPrompt.h"
#include "host/terminal/HelpPage.h"
#include "host/terminal/JsonLines.h"
#include "host/terminal/LiveDisplay.h"
#include "host/terminal/ModuleControls.h"
#include "host/terminal/Options.h"
#include "host/terminal/Output.h"
#include "host/terminal/Panel.h"
#include "host/terminal/PlainLines.h"
#include "host/terminal/Summary.h"
#include "host/terminal/TerminalHost.h"
#include "host/terminal/TerminalNotifications.h"
#include "host/terminal/TerminalType.h"
#include "platform/foundation/GlobalQueue.h"
#include "platform/headless/HeadlessNib.h"
#include "platform/headless/HeadlessWorkspace.h"

namespace vel {
namespace {

constexpr const char* kProgram = "velbar-tty";
constexpr LayoutSize kSummarySize{80, 24};

bool isTerminal(int descriptor) {
  return isatty(descriptor) == 1;
}

bool wantsLiveDisplay(const Options& options) {
  if (options.json || options.once || !isTerminal(STDOUT_FILENO)) {
    return false;
  }
  const std::string fault = terminalTypeFault();
  if (!fault.empty()) {
    report(kProgram, fault + ", showing plain lines");
  }
  return fault.empty();
}

Signals takeSignals(bool live) {
  return live ? Signals{SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGWINCH, SIGTSTP, SIGCONT}
              : Signals{SIGINT, SIGTERM, SIGHUP};
}

LayoutSize summarySize() {
  winsize window{};
  const bool known = ioctl(STDOUT_FILENO, TIOCGWINSZ, &window) == 0 && window.ws_col > 0;
  return {known ? window.ws_col : kSummarySize.columns, kSummarySize.rows};
}

/// A record's texts are the user's; in JSON they are for programs, of any country.
Locale localeFor(const Options& options) {
  const Locale user = Locale::current();
  return options.json ? Locale(".", user.languages()) : user;
}

double secondsBetweenRefreshes(const Options& options, PreferencesStore& store) {
  const auto setting = [&store] {
    return static_cast<double>(HostSettings(store).refreshInterval()) / 1000.0;
  };
  return options.interval ? *options.interval : setting();
}

void show(const Options& options, std::vector<std::string> arguments) {
  // Before the first thread, which inherits what is blocked.
  const bool live = wantsLiveDisplay(options);
  if (live && !isForeground(STDOUT_FILENO)) {
    // Before signals are blocked: so stopped, it can still be told to end.
    (void)std::raise(SIGTTOU);
  }
  Signals signals = takeSignals(live);

  const Locale locale = localeFor(options);
  const auto hostBundle = openHostBundle(kProgram, locale);
  const Bundle* bundle = hostBundle ? &*hostBundle : nullptr;
  HeadlessWorkspace workspace;
  DeferredReports reports(kProgram, live && isTerminal(STDERR_FILENO));
  GlobalQueue writing(1);
  SettingsStore store(settingsPath(), writing,
                      [&reports](const std::string& message) { reports.add(message); });
  std::optional<DesktopNotifications> desktop;
  if (options.notify) {
    desktop.emplace([&reports](const std::string& message) { reports.add(message); });
  }
  TerminalNotifications notifications(desktop ? &*desktop : nullptr);
  ModuleSession session(
      kProgram, options, std::move(arguments), locale, bundle,
      {[](auto problem) { return std::make_unique<HeadlessNibLoader>(std::move(problem)); },
       workspace, &notifications,
       [&](const SwitchingHint& hint) {
         reports.add(hint.report);
         // Where it would not be a report again.
         if (live) {
           notifications.deliverNotification(hint.notification);
         }
       }});
  session.initMainApp();
  session.setVelPreferencesDefault(&store);

  const Labels labels(bundle);
  const Output output(STDOUT_FILENO, signals.descriptor());
  Panel panel(session.module().statusbarStandAloneView());
  ModuleControls controls(session.module().preferencesModuleView(),
                          session.module().preferenceNotificationView());
  ContentSource source(session.module().statusbarView(), panel, controls, session.kernel());
  LayoutStyle style{std::string_view(nl_langinfo(CODESET)) == "UTF-8", {}};
  const bool hasKeyboard = live && isTerminal(STDIN_FILENO);
  if (hasKeyboard) {
    style.keys = describeKeys(controls, labels);
  }
  // A live display decides for itself.
  panel.setOnScreen(options.json || options.once);
  const auto makeDisplay = [&]() -> std::unique_ptr<Display> {
    if (options.json) {
      return std::make_unique<JsonLines>(output, session.kernel());
    }
    if (options.once) {
      return std::make_unique<Summary>(output, source, labels, locale, summarySize(), style);
    }
    if (live) {
      return std::make_unique<LiveDisplay>(source, panel, labels, locale, style);
    }
    return std::make_unique<PlainLines>(output);
  };
  const auto display = makeDisplay();

  EndPrompt ending(session.kernel(), labels, EndWords([bundle](const char* key) {
                     return std::string(bundle != nullptr ? bundle->localizedString(key) : key);
                   }));
  TerminalHost host(options, secondsBetweenRefreshes(options, store), session, panel, *display,
                    dynamic_cast<LiveDisplay*>(display.get()));
  host.serveSignals(signals);
  host.watchOutput();
  host.serveNotifications(notifications, reports);
  if (hasKeyboard) {
    host.serveKeyboard(controls, ending);
  }
  host.run();
}

int run(int argc, const char* const* argv) {
  std::setlocale(LC_CTYPE, "");
  requireStandardOutput();
  prepareStandardFiles();

  Options options;
  if (const auto answer = parseOptions(argc, argv, VEL_VERSION, options)) {
    if (answer->status == 0) {
      Output(STDOUT_FILENO).write(answer->text);
    } else {
      report(kProgram, answer->text);
    }
    return answer->status;
  }
  show(options, std::vector<std::string>(argv, argv + argc));
  return 0;
}

}  // namespace
}  // namespace vel

int main(int argc, char** argv) {
  try {
    return vel::run(argc, argv);
  } catch (const vel::OutputClosed&) {
    return 0;
  } catch (const std::exception& error) {
    vel::report(vel::kProgram, error.what());
    return 1;
  }
}
