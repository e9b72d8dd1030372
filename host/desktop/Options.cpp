#include "host/desktop/Options.h"

#include <CLI/CLI.hpp>
#include <initializer_list>
#include <string>
#include <utility>

namespace vel {
namespace {

constexpr const char* kDescription =
    "Shows how busy the processors are, in the menu bar. Without a display it starts\n"
    "velbar-tty, its display for terminals, in its place.";

constexpr const char* kFooter =
    "A click on the item opens its panel, the other mouse button its menu; with the\n"
    "keyboard on it, Return and the menu key do, Ctrl+comma opens the preferences and\n"
    "Ctrl+Q quits. Escape closes the panel. Settings lie in\n"
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
         "Write pictures of the item, the panels and\n"
         "the preferences into this directory, made if\n"
         "it is missing, and end; needs no display")
      ->type_name("DIR");
}

using Given = std::pair<const char*, bool>;

void requireAtMostOne(std::initializer_list<Given> options) {
  const char* first = nullptr;
  for (const auto& [name, given] : options) {
    if (given && first != nullptr) {
      throw CLI::ExcludesError(first, name);
    }
    first = given ? name : first;
  }
}

void requireOneWay(const DesktopOptions& options) {
  const Given widget{"--widget", options.widget};
  const Given snapshot{"--snapshot", options.snapshots.has_value()};
  const Given panel{"--panel", options.panel};
  requireAtMostOne({{"--bar", options.fullWidth}, {"--tray", options.tray}, widget, snapshot});
  requireAtMostOne({widget, snapshot, panel});
  // The one takes the keyboard from the other, which closes it.
  requireAtMostOne({{"--preferences", options.preferences}, panel});
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
  addFlag("--panel", options.panel, "Open the panel, likewise");
  addSnapshot(app, options.snapshots);
  options.addTo(app);
  app.callback([&options] { requireOneWay(options); });
  return parseCommandLine(app, argc, argv);
}

}  // namespace vel
