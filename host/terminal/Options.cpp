#include "host/terminal/Options.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <string>
#include <system_error>

namespace vel {
namespace {

constexpr const char* kDescription =
    "Shows how busy the processors are: on a terminal as a live display, anywhere\n"
    "else as one plain line a refresh.";

constexpr const char* kFooter =
    "The first refresh comes at once, with averages since the machine was started.\n"
    "Plain lines and JSON are always in English with a decimal point. On the display,\n"
    "q or Ctrl-C ends the program and ? tells what the other keys do. Where there is\n"
    "no display, alerts are lines on standard error.";

std::optional<std::uint64_t> parseCount(const std::string& text) {
  std::uint64_t count = 0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, count);
  if (result.ec != std::errc{} || result.ptr != end || count == 0) {
    return std::nullopt;
  }
  return count;
}

void addCount(CLI::App& app, std::optional<std::uint64_t>& count) {
  app.add_option_function<std::string>(
         "--count",
         [&count](const std::string& text) {
           count = parseCount(text);
           if (!count) {
             throw CLI::ValidationError("--count",
                                        "\"" + text + "\" is not a number of refreshes, 1 or more");
           }
         },
         "End after N refreshes, 1 or more")
      ->type_name("N");
}

}  // namespace

std::optional<CommandLineAnswer> parseOptions(int argc, const char* const* argv,
                                              const char* version, Options& options) {
  CLI::App app(kDescription, "velbar-tty");
  app.footer(kFooter);
  app.set_help_flag("-h,--help", "Print this help and end");
  app.set_version_flag("--version", std::string("velbar-tty ") + version,
                       "Print the version and end");
  options.addTo(app);
  addCount(app, options.count);
  app.add_flag("--once", options.once,
               "Take two samples an interval apart, print the\n"
               "second and end; not with --count")
      ->disable_flag_override();
  app.add_flag("--json", options.json, "Print all readings, one JSON object a refresh")
      ->disable_flag_override();
  app.add_flag("--notify", options.notify, "Send alerts to the desktop's notifications, too")
      ->disable_flag_override();
  app.callback([&options] {
    if (options.once && options.count) {
      throw CLI::ExcludesError("--once", "--count");
    }
  });
  return parseCommandLine(app, argc, argv);
}

}  // namespace vel
