#include "host/desktop/Options.h"

#include <CLI/CLI.hpp>
#include <array>
#include <string>
#include <utility>

namespace vel {
namespace {

constexpr const char* kDescription =
    "Shows how busy the processors are, in the menu bar. Without a display it starts\n"
    "velbar-tty, its display for terminals, in its place.";

constexpr const char* kFooter =
    "A click on the item opens its menu; with the keyboard on it, Return and the menu\n"
    "key do, Ctrl+comma opens the preferences and Ctrl+Q quits. Settings lie in\n"
    "$XDG_CONFIG_HOME/velbar/settings.ini.";

void addEdge(CLI::App& app, Edge& edge) {
  app.add_option_function<std::string>(
         "--edge",
         [&edge](const std::string& text) {
           if (text != "top" && text != "bottom") {
             throw CLI::ValidationError("--edge", "\"" + text + "\" is neither top nor bottom");
           }
           edge = text == "top" ? Edge::top : Edge::bottom;
         },
         "The screen's edge, top or bottom; top by\ndefault")
      ->type_name("EDGE");
}

void addSnapshot(CLI::App& app, std::optional<std::filesystem::path>& directory) {
  app.add_option_function<std::string>(
         "--snapshot",
         [&directory](const std::string& text) {
           if (text.empty()) {
             throw CLI::ValidationError("--snapshot", "\"\" is not a directory");
           }
           directory = text;
         },
         "Write pictures of the item and the\n"
         "preferences into this directory, made if it\n"
         "is missing, and end; needs no display")
      ->type_name("DIR");
}

void requireOneWay(const DesktopOptions& options) {
  const std::array<std::pair<const char*, bool>, 4> ways{
      {{"--bar", options.fullWidth},
       {"--tray", options.tray},
       {"--widget", options.widget},
       {"--snapshot", options.snapshots.has_value()}}};
  const char* first = nullptr;
  for (const auto& [name, given] : ways) {
    if (given && first != nullptr) {
      throw CLI::ExcludesError(first, name);
    }
    first = given ? name : first;
  }
}

}  // namespace

std::optional<CommandLineAnswer> parseDesktopOptions(int argc, const char* const* argv,
                                                     const char* version, DesktopOptions& options) {
  CLI::App app(kDescription, "velbar");
  app.footer(kFooter);
  app.set_help_flag("-h,--help", "Print this help and end");
  app.set_version_flag("--version", std::string("velbar ") + version, "Print the version and end");
  const auto addFlag = [&app](const char* name, bool& flag, const char* description) {
    app.add_flag(name, flag, description)->disable_flag_override();
  };
  addEdge(app, options.edge);
  addFlag("--bar", options.fullWidth, "A bar over the whole width, with a place of\nits own");
  addFlag("--tray", options.tray, "The item goes into the system tray");
  addFlag("--widget", options.widget, "A small window instead of the menu bar");
  addFlag("--preferences", options.preferences,
          "Open the preferences, of the Velbar that is\nrunning already if there is one");
  addSnapshot(app, options.snapshots);
  options.addTo(app);
  app.callback([&options] { requireOneWay(options); });
  return parseCommandLine(app, argc, argv);
}

}  // namespace vel
