#include "host/desktop/workspace/Utilities.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <filesystem>
#include <tuple>
#include <utility>

#include "host/desktop/workspace/TerminalPreferences.h"
#include "host/desktop/workspace/Words.h"

namespace vel {
namespace {

/// `info` may be null.
std::optional<Application> adopt(GAppInfo* info) {
  return info == nullptr ? std::nullopt : std::optional<Application>(info);
}

/// "X-" marks a name that is not registered.
std::string desktopName(std::string_view name) {
  std::string lower = lowerCase(name);
  return lower.starts_with("x-") ? lower.substr(2) : lower;
}

/// The names of the running desktop as XDG_CURRENT_DESKTOP has them, but in lower case.
std::vector<std::string> runningDesktops() {
  const char* list = std::getenv("XDG_CURRENT_DESKTOP");
  std::vector<std::string> names = split(list == nullptr ? "" : list, ":");
  std::transform(names.begin(), names.end(), names.begin(), lowerCase);
  return names;
}

/// Whether GIO has a program to run applications with Terminal=true in: one of those that it knows
/// since 2.74 at the latest.
bool canRunInTerminal() {
  constexpr std::array kTerminals = {"gnome-terminal", "mate-terminal", "xfce4-terminal", "tilix",
                                     "konsole",        "nxterm",        "color-xterm",    "rxvt",
                                     "dtterm",         "xterm"};
  return std::any_of(kTerminals.begin(), kTerminals.end(), [](const char* terminal) {
    return GText(g_find_program_in_path(terminal)) != nullptr;
  });
}

bool isVelbar(const Application& application) {
  return application.program().starts_with("velbar");
}

// How well an application serves a purpose, 0 best; none if it does not.
using Fitness = std::optional<int>;

Fitness fitnessAsTerminal(const Application& application) {
  return application.hasCategory("TerminalEmulator") && !application.runsInTerminal() ? Fitness(0)
                                                                                      : Fitness();
}

Fitness fitnessAsLogViewer(const Application& application) {
  return application.hasCategory("System") &&
                 application.mentions({"log", "logs", "logfile", "syslog", "journal"})
             ? Fitness(0)
             : Fitness();
}

Fitness fitnessAsSystemMonitor(const Application& application) {
  if (!application.hasCategory("System") || fitnessAsLogViewer(application)) {
    return {};
  }
  if (application.mentions({"process", "processes", "task"})) {
    return 0;
  }
  return application.hasCategory("Monitor") ? Fitness(1) : Fitness();
}

class Installed {
 public:
  Installed() : desktops_(runningDesktops()) {
    std::transform(desktops_.begin(), desktops_.end(), desktops_.begin(), desktopName);
    const bool withTerminal = canRunInTerminal();
    GList* infos = g_app_info_get_all();
    for (GList* info = infos; info != nullptr; info = info->next) {
      Application application(G_APP_INFO(info->data));
      if (!isVelbar(application) && (withTerminal || !application.runsInTerminal())) {
        applications_.push_back(std::move(application));
      }
    }
    g_list_free(infos);
    std::sort(applications_.begin(), applications_.end(),
              [](const auto& a, const auto& b) { return a.id() < b.id(); });
  }

  [[nodiscard]] std::optional<Application> systemMonitor() const {
    return best(fitnessAsSystemMonitor);
  }

  [[nodiscard]] std::optional<Application> logViewer() const {
    constexpr const char* kType = "text/x-log";
    auto chosen = adopt(g_app_info_get_default_for_type(kType, FALSE));
    if (chosen && chosen->declaresType(kType) && !chosen->hasCategory("TextEditor") &&
        has(chosen->id())) {
      return chosen;
    }
    return best(fitnessAsLogViewer);
  }

  [[nodiscard]] std::optional<Application> terminal() const {
    auto chosen = chosenTerminal();
    if (!chosen) {
      chosen = best(fitnessAsTerminal);
    }
    return chosen ? chosen : Application::ofProgram("x-terminal-emulator");
  }

 private:
  enum class Kinship { kOfTheDesktop, kForTheDesktop, kOther };

  [[nodiscard]] bool isDesktop(std::string_view name) const {
    return std::find(desktops_.begin(), desktops_.end(), desktopName(name)) != desktops_.end();
  }

  /// Whether part of an identifier such as org.kde.konsole or xfce4-terminal names the desktop.
  [[nodiscard]] bool startsWithDesktop(std::string_view part) const {
    return std::any_of(desktops_.begin(), desktops_.end(),
                       [&](const std::string& desktop) { return part.starts_with(desktop); });
  }

  [[nodiscard]] Kinship kinship(const Application& application) const {
    const auto anyOf = [](const std::vector<std::string>& all, const auto& predicate) {
      return std::any_of(all.begin(), all.end(), predicate);
    };
    const auto named = [this](const std::string& name) { return isDesktop(name); };
    if (anyOf(application.categories(), named)) {
      return Kinship::kOfTheDesktop;
    }
    const bool isForDesktop = anyOf(application.onlyShownIn(), named) ||
                              anyOf(wordsOf(application.id()), [this](const std::string& part) {
                                return startsWithDesktop(part);
                              });
    return isForDesktop ? Kinship::kForTheDesktop : Kinship::kOther;
  }

  [[nodiscard]] bool has(const std::string& id) const {
    return std::any_of(applications_.begin(), applications_.end(),
                       [&](const Application& it) { return it.id() == id; });
  }

  [[nodiscard]] std::optional<Application> chosenTerminal() const {
    for (const std::string& id : preferredTerminals(runningDesktops())) {
      if (auto listed = first(
              [&](const Application& it) { return it.id() == id && fitnessAsTerminal(it); })) {
        return listed;
      }
    }
    auto handler = adopt(g_app_info_get_default_for_uri_scheme("terminal"));
    if (handler && has(handler->id())) {
      return handler;
    }
    const char* program = std::getenv("TERMINAL");
    return program == nullptr ? std::nullopt : terminalOfProgram(program);
  }

  /// With its entry where it has one.
  [[nodiscard]] std::optional<Application> terminalOfProgram(const char* program) const {
    auto named = Application::ofProgram(program);
    if (!named) {
      return named;
    }
    const std::string name = std::filesystem::path(program).filename();
    auto entry = first([&](const Application& it) {
      return it.program() == name && fitnessAsTerminal(it) && it.isShown();
    });
    return entry ? entry : named;
  }

  [[nodiscard]] std::optional<Application> best(Fitness (*fitness)(const Application&)) const {
    using Rank = std::tuple<int, bool, Kinship, bool>;
    Rank bestRank;
    std::optional<Application> best;
    for (const Application& it : applications_) {
      const Fitness fit = fitness(it);
      if (!fit || !it.isShown()) {
        continue;
      }
      const Rank rank(*fit, it.runsInTerminal(), kinship(it), !it.hasCategory("Monitor"));
      if (!best || rank < bestRank) {
        bestRank = rank;
        best = it;
      }
    }
    return best;
  }

  template <typename Predicate>
  [[nodiscard]] std::optional<Application> first(Predicate predicate) const {
    const auto found = std::find_if(applications_.begin(), applications_.end(), predicate);
    return found == applications_.end() ? std::nullopt : std::optional(*found);
  }

  std::vector<std::string> desktops_;
  std::vector<Application> applications_;  ///< in the order of identifiers
};

}  // namespace

Utilities Utilities::find() {
  const Installed installed;
  return {installed.systemMonitor(), installed.logViewer(), installed.terminal()};
}

}  // namespace vel
