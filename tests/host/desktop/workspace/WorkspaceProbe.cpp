// Asks a workspace in the environment at hand: "list" all that it knows, or "open" a path.
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <string>

#include "host/desktop/workspace/DesktopWorkspace.h"

namespace {

void list(vel::DesktopWorkspace& workspace) {
  for (const char* name : {"Activity Monitor", "Console", "Terminal"}) {
    const std::string path = std::string("/Applications/Utilities/") + name + ".app";
    const auto icon = workspace.iconForFile(path);
    const auto opener = workspace.openerOfFile(path);
    std::cout << (opener.exists ? "" : "-") << opener.note << ';' << (icon ? icon->name : "-")
              << '\n';
  }
}

/// With what the program that is opened must not get.
void open(vel::DesktopWorkspace& workspace, const char* path, const char* canary) {
  ::open(canary, O_RDONLY | O_CREAT, 0600);  // not close-on-exec
  setenv("SET_SINCE", "1", 1);
  setenv("CHANGED_SINCE", "after", 1);
  sigset_t stop;
  sigemptyset(&stop);
  sigaddset(&stop, SIGTERM);
  sigprocmask(SIG_BLOCK, &stop, nullptr);
  std::cout << (workspace.openFile(path) ? "opened" : "failed");
  std::cout << (waitpid(-1, nullptr, WNOHANG) == -1 && errno == ECHILD ? "" : ", has a child");
}

}  // namespace

int main(int argc, char** argv) {
  vel::DesktopWorkspace workspace(nullptr);
  if (argc == 4) {
    open(workspace, argv[2], argv[3]);
  } else {
    list(workspace);
  }
}
