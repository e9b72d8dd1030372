// Which applications stand in, on desktops made of files, and how they are started.
#include "host/desktop/workspace/DesktopWorkspace.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

#include "support/TemporaryDirectory.h"

namespace vel::test {
namespace {

const std::string kMonitor = "/Applications/Utilities/Activity Monitor.app";
const std::string kLog = "/Applications/Utilities/Console.app";
const std::string kTerminal = "/Applications/Utilities/Terminal.app";

struct File {
  std::string path;
  std::string content;
};

/// An entry that runs the program of its own name. Later lines override earlier ones.
File entry(const std::string& id, const std::string& categories, const std::string& lines = "") {
  return {"data/applications/" + id + ".desktop", "[Desktop Entry]\nType=Application\nName=" + id +
                                                      "\nExec=" + id +
                                                      "\nCategories=" + categories + "\n" + lines};
}

File terminal(const std::string& id, const std::string& lines = "") {
  return entry(id, "TerminalEmulator;", lines);
}

File monitor(const std::string& id, const std::string& lines = "") {
  return entry(id, "System;Monitor;", lines);
}

std::string readAll(const std::string& file) {
  std::ifstream stream(file);
  return {std::istreambuf_iterator(stream), {}};
}

File program(const std::string& name) {
  return {"bin/" + name, ""};
}

struct Desktop : TemporaryDirectory {
  void install(const File& file) const {
    const std::filesystem::path at = path + '/' + file.path;
    std::filesystem::create_directories(at.parent_path());
    if (!file.path.starts_with("bin/")) {
      std::ofstream(at) << file.content;
    } else if (!std::filesystem::is_symlink(at)) {
      std::filesystem::create_symlink("/bin/true", at);
    }
    if (at.extension() == ".desktop") {
      install(program(at.stem()));
    }
  }

  /// What is written by a function in a process of its own, as GIO reads its environment once.
  [[nodiscard]] std::string inProcess(const std::function<void(std::ostream&)>& run) const {
    const std::string output = path + "/output";
    std::fflush(nullptr);
    const pid_t child = fork();
    if (child == 0) {
      for (const auto& [name, value] : {std::pair{"XDG_DATA_HOME", "/home"},
                                        {"XDG_DATA_DIRS", "/data"},
                                        {"XDG_CONFIG_HOME", "/config"},
                                        {"XDG_CONFIG_DIRS", "/xdg"},
                                        {"PATH", "/bin"}}) {
        setenv(name, (path + value).c_str(), 1);
      }
      {
        std::ofstream stream(output);
        run(stream);
      }
      exit(0);  // with what the sanitizers find
    }
    int status = 0;
    waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
    return readAll(output);
  }
};

struct Case {
  const char* name;
  std::vector<File> files;
  std::string expected;  ///< system monitor|log viewer|terminal
  const char* variable = "UNRELATED=1";
};

void check(const std::vector<Case>& cases) {
  for (const Case& it : cases) {
    SCOPED_TRACE(it.name);
    const Desktop desktop;
    for (const File& file : it.files) {
      desktop.install(file);
    }
    const std::string listing = desktop.inProcess([&](std::ostream& stream) {
      const std::string name(it.variable, std::strchr(it.variable, '='));
      setenv(name.c_str(), it.variable + name.size() + 1, 1);
      DesktopWorkspace workspace(nullptr);
      for (const std::string& path : {kMonitor, kLog, kTerminal}) {
        const auto opener = workspace.openerOfFile(path);
        stream << (path == kMonitor ? "" : "|") << (opener.exists ? opener.note : "-");
      }
    });
    EXPECT_EQ(listing, it.expected);
  }
}

TEST(DesktopWorkspace, TakesTheRunningDesktopsOwnWhereAllAreInstalled) {
  // As Debian 12 ships them, where identifiers, categories, keywords and desktops are concerned.
  const std::vector<File> all = {
      terminal("debian-xterm"),
      entry("gnome-system-monitor", "GNOME;System;Monitor;", "NotShowIn=KDE;\nKeywords=Process;"),
      monitor("htop", "Terminal=true\nKeywords=process"),
      entry("org.gnome.Logs", "GNOME;System;Monitor;", "Keywords=log;journal;"),
      entry("org.gnome.Terminal", "GNOME;TerminalEmulator;", "OnlyShowIn=GNOME;Unity;"),
      entry("org.kde.konsole", "Qt;KDE;System;TerminalEmulator;"),
      entry("org.kde.ksystemlog", "KDE;System;Monitor;", "Keywords=logfile;Event Viewer"),
      entry("org.kde.plasma-systemmonitor", "KDE;System;", "Keywords=task;process;cpu"),
      monitor("system-log", "OnlyShowIn=MATE;\nKeywords=MATE;monitor;log;"),
  };
  check({
      {"", all, "gnome-system-monitor|org.gnome.Logs|debian-xterm"},
      {"", all, "gnome-system-monitor|org.gnome.Logs|org.gnome.Terminal",
       "XDG_CURRENT_DESKTOP=ubuntu:GNOME"},
      {"", all, "org.kde.plasma-systemmonitor|org.kde.ksystemlog|org.kde.konsole",
       "XDG_CURRENT_DESKTOP=KDE"},
      {"", all, "gnome-system-monitor|system-log|debian-xterm", "XDG_CURRENT_DESKTOP=MATE"},
  });
}

TEST(DesktopWorkspace, AsksTheUserFirst) {
  const File a = terminal("a");
  const File b = terminal("b");
  const File hidden = terminal("hidden", "NoDisplay=true");
  const auto list = [](const std::string& file, const std::string& content) {
    return File{file + "xdg-terminals.list", content};
  };
  const auto handler = [](const std::string& type) {
    return File{"config/mimeapps.list", "[Default Applications]\n" + type + ".desktop\n"};
  };
  const File toHidden = handler("x-scheme-handler/terminal=hidden");
  const File reader = entry("reader", "Utility;", "MimeType=text/x-log;");
  const File editor = entry("reader", "TextEditor;", "MimeType=text/x-log;");
  const File logs = monitor("logs");
  const File toReader = handler("text/x-log=reader");
  check({
      {"list skips what cannot be",
       {a, b, list("config/", "#a.desktop\n\ngone.desktop\n  b.desktop:new\na.desktop")},
       "-|-|b"},
      {"the running desktop's list first",
       {a, b, list("config/", "a.desktop"), list("config/kde-", "b.desktop")},
       "-|-|b",
       "XDG_CURRENT_DESKTOP=KDE"},
      {"list before handler", {b, hidden, toHidden, list("xdg/", "b.desktop")}, "-|-|b"},
      {"handler, though hidden", {b, hidden, toHidden}, "-|-|hidden", "TERMINAL=b"},
      {"$TERMINAL without an entry", {a}, "-|-|true", "TERMINAL=/bin/true"},
      {"no such $TERMINAL", {a, program("x-terminal-emulator")}, "-|-|a", "TERMINAL=gone"},
      {"x-terminal-emulator", {program("x-terminal-emulator")}, "-|-|x-terminal-emulator"},
      {"the default for logs", {logs, reader, toReader}, "-|reader|-"},
      {"an editor is no log viewer", {logs, editor, toReader}, "-|logs|-"},
  });
}

TEST(DesktopWorkspace, KnowsWhatServes) {
  const File battery = monitor("battery");
  const File top = monitor("top", "Terminal=true\nKeywords=process");
  const File window = monitor("window", "Keywords=process");
  const File own = monitor("own", "Keywords=process\nExec=velbar");
  check({
      {"a terminal's, without one", {top}, "-|-|-"},
      {"a terminal's", {top, battery, program("xterm")}, "top|-|-"},
      {"a window before a terminal", {top, window, program("xterm")}, "window|-|-"},
      {"any monitor rather than none", {battery}, "battery|-|-"},
      {"never Velbar", {own, window, program("velbar")}, "window|-|-"},
      {"nothing that cannot be",
       {terminal("b", "NoDisplay=true"),
        terminal("d", "TryExec=gone"),
        terminal("e", "Exec=/gone/e"),
        {"data/applications/f.desktop", "\x7F\x45LF\xFF\xFE"},
        terminal("z")},
       "-|-|z"},
      {"names are plain text",
       {terminal("a", "Name=<b>%s &amp;\\n\x1B[31mX\u202EY\u202C\u200Cz</b>\xC3\xA9")},
       "-|-|<b>%s &amp;  [31mX Y \u200Cz</b>\xC3\xA9"},
  });
}

TEST(DesktopWorkspace, StartsAProgramThatHasNothingOfOurs) {
  ASSERT_STREQ(getenv("CHANGED_SINCE"), "before") << "to be run by ctest";
  const Desktop desktop;
  const std::string report = desktop.path + "/bin/report";
  desktop.install(terminal("a", "Exec=" + report + " --with 'one two' %F %i\n"));
  const std::string fifo = desktop.path + "/fifo";
  ASSERT_EQ(mkfifo(fifo.c_str(), 0600), 0);
  // Not /bin/sh, which may unblock signals itself.
  std::ofstream(report)
      << "#!/bin/bash\n{ for a in \"$@\"; do echo \"argument $a\"; done\n"
         "ls -l /proc/$$/fd; grep SigBlk /proc/self/status; tr '\\0' '\\n' </proc/$$/environ\n"
         "read -r pid name state parent group session rest </proc/$$/stat\n"
         "echo session $((session - $$)); } >"
      << fifo;
  std::filesystem::permissions(report, std::filesystem::perms::owner_all);

  // It waits for us at the FIFO, while the process that starts it comes to its end.
  const std::string opened = desktop.inProcess([&](std::ostream& stream) {
    open((desktop.path + "/canary").c_str(), O_RDONLY | O_CREAT, 0600);  // not close-on-exec
    setenv("SET_SINCE", "1", 1);
    setenv("CHANGED_SINCE", "after", 1);
    sigset_t all;
    sigfillset(&all);
    sigprocmask(SIG_BLOCK, &all, nullptr);
    DesktopWorkspace workspace(nullptr);
    for (const std::string& path : {std::string("/bin/true"), std::string(), kLog, kTerminal}) {
      stream << workspace.openFile(path);
    }
    stream << (waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? "" : ", has a child");
  });
  EXPECT_EQ(opened, "0001");
  const std::string text = readAll(fifo);
  for (const char* expected :
       {"argument --with\nargument one two\n", " 0 -> /dev/null", " 2 -> /dev/null",
        "SigBlk:\t0000000000000000\n", "\nCHANGED_SINCE=before\n", "session 0\n"}) {
    EXPECT_NE(text.find(expected), std::string::npos) << expected << " is not in\n" << text;
  }
  for (const char* unexpected : {"canary", "pipe:", "output", "SET_SINCE", "STARTUP_ID",
                                 "ACTIVATION_TOKEN", "\nargument \n", "argument %"}) {
    EXPECT_EQ(text.find(unexpected), std::string::npos) << unexpected << " is in\n" << text;
  }
}

}  // namespace
}  // namespace vel::test
