// The part of the command line that every host takes.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace vel {

struct HostOptions {
  std::filesystem::path bundle;  ///< empty for the installed one
  std::filesystem::path proc = "/proc";
  std::filesystem::path sys = "/sys";
  std::filesystem::path debugfs;   ///< empty for the one below `sys`
  std::optional<double> interval;  ///< seconds from one refresh to the next

  // How the graphics processors are to be switched; the module reads the arguments itself.
  bool discrete = false;
  bool integrated = false;
  bool dynamic = false;

  /// Those of the three that were given, the one that holds first.
  [[nodiscard]] std::vector<std::string> switchingFlags() const;

  /// Adds the options to `app`, which must not outlive this object.
  void addTo(CLI::App& app);
};

/// What a program that only answers its command line says: on standard output with status 0, else
/// as a report.
struct CommandLineAnswer {
  int status = 0;
  std::string text;
};

/// Nothing when the program is to run. Bad arguments are answered with one line and status 2.
std::optional<CommandLineAnswer> parseCommandLine(CLI::App& app, int argc, const char* const* argv);

}  // namespace vel
