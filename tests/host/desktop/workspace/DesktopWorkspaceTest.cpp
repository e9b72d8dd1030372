// Which applications stand in, on desktops made of files, and how they are started.
#include "host/desktop/workspace/DesktopWorkspace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include "support/InstalledPlatform.h"

namespace vel::test {
namespace {

constexpr const char* kTerminal = "/Applications/Utilities/Terminal.app";

struct File {
  std::string path;
  std::string content;
};

/// An entry that runs the program of its own name. Later lines override earlier ones.
File entry(const std::string& id, const std::string& lines) {
  return {"data/applications/" + id + ".desktop",
          "[Desktop Entry]\nType=Application\nName=" + id + "\nExec=" + id + "\n" + lines};
}

class Desktop {
 public:
  Desktop() {
    EXPECT_NE(mkdtemp(root_.data()), nullptr);
    for (const char* directory : {"bin", "home/applications", "data/applications", "config"}) {
      std::filesystem::create_directories(root_ + '/' + directory);
    }
  }
  ~Desktop() { std::filesystem::remove_all(root_); }
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  [[nodiscard]] std::string path(const std::string& relative) const {
    return root_ + '/' + relative;
  }

  void install(const File& file) const {
    const std::filesystem::path at = path(file.path);
    std::filesystem::create_directories(at.parent_path());
    std::ofstream(at) << file.content;
    if (at.extension() == ".desktop") {
      addProgram(at.stem());
    }
  }
  void addProgram(const std::string& name) const {
    std::filesystem::remove(path("bin/" + name));
    std::filesystem::create_symlink("/bin/true", path("bin/" + name));
  }

  /// Assignments for a shell.
  [[nodiscard]] std::string environment() const {
    return " HOME=" + path("") + " XDG_DATA_HOME=" + path("home") +
           " XDG_DATA_DIRS=" + path("data") + " XDG_CONFIG_HOME=" + path("config") +
           " XDG_CONFIG_DIRS=" + path("xdg") +
           " DBUS_SESSION_BUS_ADDRESS=disabled: PATH=" + path("bin") + ' ';
  }

  /// What the probe prints.
  [[nodiscard]] std::string probe(const std::string& variables,
                                  const std::string& arguments) const {
    const std::string command = "env -i TSAN_OPTIONS=\"$TSAN_OPTIONS\"" + environment() +
                                variables + " " VEL_WORKSPACE_PROBE " " + arguments;
    std::FILE* pipe = popen(command.c_str(), "r");
    std::string output;
    for (int c = std::getc(pipe); c != EOF; c = std::getc(pipe)) {
      output += char(c);
    }
    EXPECT_EQ(pclose(pipe), 0) << command;
    return output;
  }

 private:
  std::string root_ = std::filesystem::temp_directory_path() / "vel-XXXXXX";
};

using Column = std::size_t;
constexpr Column kNote = 0;
constexpr Column kIcon = 1;

/// System monitor|log viewer|terminal.
std::string column(const std::string& listing, Column which) {
  std::istringstream lines(listing);
  std::string all;
  for (std::string line; std::getline(lines, line);) {
    const auto semicolon = line.rfind(';');
    all += (all.empty() ? "" : "|") +
           (which == kNote ? line.substr(0, semicolon) : line.substr(semicolon + 1));
  }
  return all;
}

// As Debian 12 ships them, where names, categories, keywords and desktops are concerned.
const std::vector<File>& wellKnown() {
  static const std::vector<File> kEntries = {
      entry("debian-xterm", "Name=XTerm\nCategories=System;TerminalEmulator;"),
      entry("foot", "Name=Foot\nCategories=System;TerminalEmulator;"),
      entry("gnome-system-monitor",
            "Name=System Monitor\nIcon=org.gnome.SystemMonitor\nNotShowIn=KDE;\n"
            "Categories=GNOME;GTK;System;Monitor;\nKeywords=Monitor;System;Process;CPU;"),
      entry("gnome-system-monitor-kde",
            "Name=GNOME System Monitor\nOnlyShowIn=KDE;\nCategories=GNOME;GTK;System;Monitor;\n"
            "Keywords=Monitor;System;Process;CPU;"),
      entry("htop",
            "Name=Htop\nTerminal=true\nCategories=System;Monitor;ConsoleOnly;\n"
            "Keywords=system;process;task"),
      entry("lxtask", "Name=Task Manager\nCategories=GTK;System;Monitor;\nKeywords=task;kill;"),
      entry("mate-system-log",
            "Name=Log File Viewer\nOnlyShowIn=MATE;\nCategories=GTK;System;Monitor;\n"
            "Keywords=MATE;monitor;view;system;log;files;logviewer;"),
      entry("mate-system-monitor",
            "Name=MATE System Monitor\nOnlyShowIn=MATE;\nCategories=GTK;System;Monitor;\n"
            "Keywords=MATE;system;monitor;process;list;"),
      entry("org.gnome.Logs",
            "Name=Logs\nIcon=/icons/logs.svg\nKeywords=log;journal;debug;error;\n"
            "Categories=GTK;GNOME;System;Monitor;Utility;X-GNOME-Utilities;"),
      entry("org.gnome.PowerStats",
            "Name=Power Statistics\nKeywords=battery;consumption;charge;\n"
            "Categories=GNOME;GTK;System;Monitor;\nOnlyShowIn=GNOME;Unity;"),
      entry("org.gnome.Terminal",
            "Name=Terminal\nCategories=GNOME;GTK;System;TerminalEmulator;\n"
            "OnlyShowIn=GNOME;Unity;"),
      entry("org.gnome.Terminal.Preferences",
            "Name=Preferences\nCategories=GNOME;GTK;System;TerminalEmulator;\nNoDisplay=true"),
      entry("org.kde.konsole", "Name=Konsole\nCategories=Qt;KDE;System;TerminalEmulator;"),
      entry(
          "org.kde.ksystemlog",
          "Name=KSystemLog\nCategories=Qt;KDE;System;Monitor;\nKeywords=log;logfile;Event Viewer"),
      entry("org.kde.plasma-systemmonitor",
            "Name=Plasma Monitor\nCategories=Qt;KDE;System;\n"
            "Keywords=task;manager;process;cpu;memory;"),
      entry("qterminal", "Name=QTerminal\nCategories=Qt;System;TerminalEmulator;"),
      entry("qterminal-drop", "Name=QTerminal drop down\nCategories=Qt;System;TerminalEmulator;"),
      entry("xfce4-taskmanager", "Name=Xfce Task Manager\nCategories=System;Utility;"),
      entry("xfce4-terminal", "Name=Xfce Terminal\nCategories=GTK;System;TerminalEmulator;"),
  };
  return kEntries;
}

TEST(DesktopWorkspace, TakesTheRunningDesktopsOwnWhereAllAreInstalled) {
  const Desktop desktop;
  for (const File& file : wellKnown()) {
    desktop.install(file);
  }
  const std::vector<std::pair<std::string, std::string>> cases = {
      {"GNOME", "System Monitor|Logs|Terminal"},
      {"ubuntu:GNOME", "System Monitor|Logs|Terminal"},
      {"KDE", "Plasma Monitor|KSystemLog|Konsole"},
      {"XFCE", "Xfce Task Manager|Logs|Xfce Terminal"},
      {"MATE", "MATE System Monitor|Log File Viewer|XTerm"},
      {"sway", "System Monitor|Logs|XTerm"},
      {"", "System Monitor|Logs|XTerm"},
  };
  for (const auto& [running, expected] : cases) {
    SCOPED_TRACE(running);
    const std::string listing = desktop.probe("XDG_CURRENT_DESKTOP=" + running, "list");
    EXPECT_EQ(column(listing, kNote), expected);
    if (running == "GNOME") {
      EXPECT_EQ(column(listing, kIcon),
                "org.gnome.SystemMonitor|/icons/logs.svg|utilities-terminal");
    }
  }
}

struct Case {
  const char* name;
  std::vector<File> files;
  std::vector<std::string> programs;
  std::string variables;
  std::string systemMonitor;  ///< "-" before the reason why there is none
  std::string logViewer;
  std::string terminal;
};

constexpr const char* kNoMonitor = "-No system monitor is installed";
constexpr const char* kNoLog = "-No log viewer is installed";
constexpr const char* kNoTerminal = "-No terminal is installed";

void check(const std::vector<Case>& cases) {
  for (const Case& it : cases) {
    SCOPED_TRACE(it.name);
    const Desktop desktop;
    for (const File& file : it.files) {
      desktop.install(file);
    }
    for (const std::string& program : it.programs) {
      desktop.addProgram(program);
    }
    EXPECT_EQ(column(desktop.probe(it.variables, "list"), kNote),
              it.systemMonitor + '|' + it.logViewer + '|' + it.terminal);
  }
}

TEST(DesktopWorkspace, AsksTheUserFirstForTheTerminal) {
  const std::string category = "Categories=TerminalEmulator;\n";
  const File a = entry("a", category);
  const File b = entry("b", category);
  const File hidden = entry("hidden", category + "NoDisplay=true");
  const File c = entry("c", "");
  const File handler = {"config/mimeapps.list",
                        "[Default Applications]\nx-scheme-handler/terminal=hidden.desktop\n"};
  const auto list = [](const std::string& file, const std::string& content) {
    return File{file + "xdg-terminals.list", content};
  };
  const auto terminal = [](const char* name, std::vector<File> files, const char* variables,
                           const char* expected) {
    return Case{name, std::move(files), {}, variables, kNoMonitor, kNoLog, expected};
  };
  check({
      terminal("identifiers", {b, a, hidden, c}, "", "a"),
      terminal("list", {a, b, list("config/", "#a.desktop\n\n  b.desktop:new\na.desktop\n")}, "",
               "b"),
      terminal("list skips what cannot be",
               {a, b, c, list("config/", "-a.desktop\n/x\ngone.desktop\nc.desktop\nb.desktop")}, "",
               "b"),
      terminal("the running desktop's list first",
               {a, b, list("config/", "a.desktop"), list("config/kde-", "b.desktop")},
               "XDG_CURRENT_DESKTOP=KDE", "b"),
      terminal("another desktop's list", {a, b, list("config/gnome-", "b.desktop")},
               "XDG_CURRENT_DESKTOP=KDE", "a"),
      terminal("the user's list before the system's",
               {a, b, list("xdg/kde-", "a.desktop"), list("config/", "b.desktop")},
               "XDG_CURRENT_DESKTOP=KDE", "b"),
      terminal("the system's list", {a, b, list("xdg/", "b.desktop")}, "TERMINAL=a", "b"),
      terminal("list before handler", {a, b, hidden, handler, list("config/", "b.desktop")}, "",
               "b"),
      terminal("handler before $TERMINAL, though hidden", {a, b, hidden, handler}, "TERMINAL=b",
               "hidden"),
      terminal("$TERMINAL of an entry", {a, b, entry("b", category + "Name=Bee")}, "TERMINAL=b",
               "Bee"),
      terminal("$TERMINAL without an entry", {a, c}, "TERMINAL=/bin/true", "true"),
      terminal("$TERMINAL that is not installed", {a}, "TERMINAL=gone", "a"),
      {"x-terminal-emulator last", {a}, {"x-terminal-emulator"}, "", kNoMonitor, kNoLog, "a"},
      {"x-terminal-emulator",
       {},
       {"x-terminal-emulator"},
       "",
       kNoMonitor,
       kNoLog,
       "x-terminal-emulator"},
  });
}

TEST(DesktopWorkspace, KnowsALogViewerAndASystemMonitorByWhatTheySay) {
  const std::string monitor = "Categories=System;Monitor;\n";
  const File battery = entry("battery", monitor);
  const File top = entry("top", monitor + "Terminal=true\nKeywords=process");
  const File window = entry("window", monitor + "Keywords=process");
  const File own = entry("velbar-desktop", monitor + "Keywords=process\nExec=velbar");
  const File logs = entry("logs", monitor);
  const File reader = entry("reader", "Categories=Utility;\nMimeType=text/x-log;");
  const File editor =
      entry("editor", "Categories=Utility;TextEditor;\nMimeType=text/x-log;text/plain;");
  const auto handledBy = [](const char* id) {
    return File{"config/mimeapps.list",
                std::string("[Default Applications]\ntext/x-log=") + id + ".desktop\n"};
  };
  check({
      {"nothing", {}, {}, "", kNoMonitor, kNoLog, kNoTerminal},
      {"a terminal's, without one", {top}, {}, "", kNoMonitor, kNoLog, kNoTerminal},
      {"a terminal's", {top, battery}, {"xterm"}, "", "top", kNoLog, kNoTerminal},
      {"a window before a terminal", {top, window}, {"xterm"}, "", "window", kNoLog, kNoTerminal},
      {"any monitor rather than none", {battery}, {}, "", "battery", kNoLog, kNoTerminal},
      {"never Velbar", {own, window}, {"velbar"}, "", "window", kNoLog, kNoTerminal},
      {"log viewers are no system monitors", {logs}, {}, "", kNoMonitor, "logs", kNoTerminal},
      {"words are English and whole",
       {entry("x", "Categories=System;\nName=Login\nName[de]=Log\nKeywords=dialog;\n")},
       {},
       "LANGUAGE=de",
       kNoMonitor,
       kNoLog,
       kNoTerminal},
      {"Monitor before others",
       {entry("a", "Categories=System;\nKeywords=task"), window},
       {},
       "",
       "window",
       kNoLog,
       kNoTerminal},
      {"the default for logs",
       {logs, reader, handledBy("reader")},
       {},
       "",
       kNoMonitor,
       "reader",
       kNoTerminal},
      {"an editor is no log viewer",
       {logs, editor, handledBy("editor")},
       {},
       "",
       kNoMonitor,
       "logs",
       kNoTerminal},
      {"that does not say it opens logs",
       {logs, window, handledBy("window")},
       {},
       "",
       "window",
       "logs",
       kNoTerminal},
  });
}

TEST(DesktopWorkspace, LeavesOutWhatIsNotThere) {
  const std::string category = "Categories=TerminalEmulator;\n";
  const File last = entry("z", category);
  File overridden = entry("a", "Hidden=true");
  overridden.path = "home/applications/a.desktop";
  std::vector<Case> cases;
  for (const auto& [name, files] : std::vector<std::pair<const char*, std::vector<File>>>{
           {"hidden by the user", {entry("a", category), overridden}},
           {"no TryExec", {entry("a", category + "TryExec=gone")}},
           {"no Exec", {entry("a", category + "Exec=/gone/a")}},
           {"another desktop's", {entry("a", category + "OnlyShowIn=KDE;")}},
           {"a terminal in a terminal", {entry("a", category + "Terminal=true")}},
           {"no application", {entry("a", category + "Type=Link\nURL=file:///")}},
           {"no entry", {{"data/applications/a.desktop", "\x7F\x45LF\xFF\xFE"}}},
           {"empty", {{"data/applications/a.desktop", ""}}},
           {"cut short", {{"data/applications/a.desktop", "[Desktop Entry\nType=Appl"}}},
           {"a directory", {{"data/applications/a.desktop/b", ""}}},
       }) {
    cases.push_back({name, files, {"xterm"}, "XDG_CURRENT_DESKTOP=GNOME", kNoMonitor, kNoLog, "z"});
    cases.back().files.push_back(last);
  }
  check(cases);
}

TEST(DesktopWorkspace, ShowsNamesAsPlainText) {
  const std::string name = "<b>%s &amp;\\n\x1B[31mX\u202EY\u202C\u200Cz</b>\xC3\xA9";
  check({{"",
          {entry("a", "Categories=TerminalEmulator;\nName=" + name)},
          {},
          "",
          kNoMonitor,
          kNoLog,
          "<b>%s &amp;  [31mX Y \u200Cz</b>\xC3\xA9"}});
}

/// Reads until the line "end".
std::string readReport(const std::string& fifo) {
  const int descriptor = open(fifo.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  std::string text;
  while (text.find("\nend\n") == std::string::npos) {
    pollfd wait = {descriptor, POLLIN, 0};
    std::array<char, 4096> buffer{};
    if (poll(&wait, 1, 60'000) <= 0) {
      ADD_FAILURE() << "nothing came";
      break;
    }
    const ssize_t size = read(descriptor, buffer.data(), buffer.size());
    text.append(buffer.data(), size > 0 ? std::size_t(size) : 0);
  }
  close(descriptor);
  return text;
}

TEST(DesktopWorkspace, StartsAProgramThatHasNothingOfOurs) {
  const Desktop desktop;
  desktop.install(entry("a", "Categories=TerminalEmulator;\nExec=report --with 'one two' %F %i\n"));
  const std::string fifo = desktop.path("fifo");
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  // Not /bin/sh, which may unblock signals itself.
  std::ofstream(desktop.path("bin/report"))
      << "#!/bin/bash\n{ for a in \"$@\"; do echo \"argument $a\"; done\n"
         "ls -l /proc/$$/fd; grep SigBlk /proc/self/status; tr '\\0' '\\n' </proc/$$/environ\n"
         "read -r pid name state parent group session rest </proc/$$/stat\n"
         "echo session $((session - $$)); echo end; } >"
      << fifo;
  std::filesystem::permissions(desktop.path("bin/report"), std::filesystem::perms::owner_all);

  // It waits for us at the FIFO, while the probe has come to its end.
  EXPECT_EQ(desktop.probe("PATH=" + desktop.path("bin:/usr/bin:/bin") +
                              " GIVEN=1 CHANGED_SINCE=before DESKTOP_STARTUP_ID=ours"
                              " XDG_ACTIVATION_TOKEN=ours",
                          std::string("open ") + kTerminal + ' ' + desktop.path("canary")),
            "opened");
  const std::string report = readReport(fifo);
  for (const char* expected :
       {"argument --with\nargument one two\n", " 0 -> /dev/null", " 2 -> /dev/null",
        "SigBlk:\t0000000000000000\n", "\nGIVEN=1\n", "\nCHANGED_SINCE=before\n", "session 0\n"}) {
    EXPECT_NE(report.find(expected), std::string::npos) << expected << " is not in\n" << report;
  }
  for (const char* unexpected : {"canary", "pipe:", "SET_SINCE", "STARTUP_ID", "ACTIVATION_TOKEN",
                                 "\nargument \n", "argument %"}) {
    EXPECT_EQ(report.find(unexpected), std::string::npos) << unexpected << " is in\n" << report;
  }
}

TEST(DesktopWorkspace, OpensNothingElse) {
  const Desktop desktop;
  desktop.install(entry("a", "Categories=TerminalEmulator;\n"));
  for (const char* path : {"/bin/true", "/Applications/Utilities/Console.app", "''"}) {
    EXPECT_EQ(desktop.probe("", std::string("open ") + path + ' ' + desktop.path("canary")),
              "failed");
  }
}

struct HandClock : Clock {
  [[nodiscard]] double now() const override { return time; }
  void sleep(double /*seconds*/) override {}
  double time = 100;
};

// The only one that has GIO in this process.
TEST(DesktopWorkspace, LooksAgainAfterASecond) {
  const Desktop desktop;
  for (const auto& [name, value] : {std::pair{"XDG_DATA_HOME", "home"},
                                    {"XDG_DATA_DIRS", "data"},
                                    {"XDG_CONFIG_HOME", "config"},
                                    {"XDG_CONFIG_DIRS", "xdg"},
                                    {"PATH", "bin"}}) {
    setenv(name, desktop.path(value).c_str(), 1);
  }
  unsetenv("TERMINAL");
  const Bundle texts = openBundle(VEL_HOST_RESOURCES, {"de"});
  auto owned = std::make_unique<HandClock>();
  HandClock& clock = *owned;
  DesktopWorkspace workspace(&texts, std::move(owned));
  EXPECT_EQ(workspace.openerOfFile(kTerminal).note, "Es ist kein Terminal installiert");
  EXPECT_FALSE(workspace.iconForFile(kTerminal));
  EXPECT_EQ(workspace.openerOfFile("/bin/true").note, "");
  EXPECT_FALSE(workspace.openerOfFile("/bin/true").exists);

  desktop.install(entry("a", "Categories=TerminalEmulator;\n"));
  // Until GIO has heard of it.
  while (!DesktopWorkspace(&texts).openerOfFile(kTerminal).exists) {
  }
  clock.time = 100.9;
  EXPECT_FALSE(workspace.openerOfFile(kTerminal).exists);
  clock.time = 101;
  EXPECT_EQ(workspace.openerOfFile(kTerminal).note, "a");

  desktop.addProgram("b");
  desktop.install(entry("b", "Categories=TerminalEmulator;\n"));
  std::filesystem::remove(desktop.path("data/applications/a.desktop"));
  while (DesktopWorkspace(&texts).openerOfFile(kTerminal).note != "b") {
  }
  clock.time = 50;  // set back
  EXPECT_EQ(workspace.openerOfFile(kTerminal).note, "b");
}

}  // namespace
}  // namespace vel::test
