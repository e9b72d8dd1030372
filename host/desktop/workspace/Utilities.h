// Which of the installed applications are the desktop's system monitor, log viewer and terminal.
#pragma once

#include <optional>

#include "host/desktop/workspace/Application.h"

namespace vel {

/// See docs/launchers.md for the whole. What the user has chosen comes first:
///
/// - terminal: the first installed one in the files xdg-terminals.list (TerminalPreferences.h);
///   else the default application for x-scheme-handler/terminal; else the program in $TERMINAL
/// - log viewer: the default application for text/x-log, if its entry lists that type and it is no
///   TextEditor, as the default is often the text editor, by way of text/plain
///
/// Otherwise it is the best of those installed that serve the purpose:
///
/// - terminal: category TerminalEmulator
/// - log viewer: category System, and its English name or keywords have a word such as "log"; there
///   is no category for it
/// - system monitor: category System, no log viewer, and a word such as "process"; failing that,
///   category Monitor, which monitors of a battery have as well
///
/// The best is one that
///
/// 1. opens a window, before one that needs a terminal
/// 2. belongs to the running desktop: by its categories; else by OnlyShowIn or its identifier
/// 3. has the category Monitor
/// 4. comes first in the order of identifiers, without ".desktop"
///
/// Only then comes Debian's x-terminal-emulator, for the terminal.
///
/// Not counted are: Velbar; what GIO takes for not installed (Hidden, or without its TryExec or
/// Exec); what is not shown in the running desktop (NoDisplay, OnlyShowIn, NotShowIn), unless the
/// user has chosen it; what needs a terminal, where GIO knows none to run it in.
struct Utilities {
  std::optional<Application> systemMonitor;
  std::optional<Application> logViewer;
  std::optional<Application> terminal;

  /// Reads all entries: tens of milliseconds on a desktop with many.
  static Utilities find();
};

}  // namespace vel
