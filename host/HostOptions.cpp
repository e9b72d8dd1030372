#include "host/HostOptions.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <system_error>
#include <utility>

#include "host/HostSettings.h"

namespace vel {
namespace {

constexpr double kShortestInterval = HostSettings::kShortestInterval / 1000.0;
constexpr double kLongestInterval = HostSettings::kLongestInterval / 1000.0;

/// Plain decimal notation only. std::from_chars reads "inf" and "nan" as well, which no range
/// holds.
std::optional<double> parseInterval(const std::string& text) {
  double seconds = 0.0;
  const char* end = text.data() + text.size();
  const auto result = std::from_chars(text.data(), end, seconds, std::chars_format::fixed);
  const bool inRange = seconds >= kShortestInterval && seconds <= kLongestInterval;
  if (result.ec != std::errc{} || result.ptr != end || !inRange) {
    return std::nullopt;
  }
  return seconds;
}

void addDirectory(CLI::App& app, const std::string& name, std::filesystem::path& directory,
                  const std::string& description) {
  app.add_option_function<std::string>(
         name,
         [name, &directory](const std::string& text) {
           std::error_code error;
           if (!std::filesystem::is_directory(text, error)) {
             throw CLI::ValidationError(name, "\"" + text + "\" is not a directory");
           }
           directory = text;
         },
         description)
      ->type_name("DIR");
}

void addFlag(CLI::App& app, const char* name, bool& flag, const char* description) {
  app.add_flag(name, flag, description)->disable_flag_override();
}

/// CLI11 says "--interval: 1 required SECONDS missing" and, of a flag with a value, "json was given
/// a disallowed flag override"; that is no English.
std::string mismatch(const CLI::App& app, const std::string& message) {
  const std::string name = message.substr(0, message.find_first_of(": "));
  if (const CLI::Option* option = app.get_option_no_throw(name)) {
    return name + ": expected once, as " + name + " " + option->get_type_name();
  }
  return "--" + name + " takes no value";
}

/// CLI11 names all that it did not expect, the last first.
std::string unexpected(const CLI::App& app) {
  const auto arguments = app.remaining();
  const bool isOption = arguments.front() != "--" && arguments.front().starts_with('-');
  // What follows "--" is no option, whatever it looks like.
  return isOption ? "unknown option " + arguments.front()
                  : "unexpected argument " + arguments[arguments.front() == "--" ? 1 : 0];
}

}  // namespace

void HostOptions::addTo(CLI::App& app) {
  app.add_option_function<std::string>(
         "--interval",
         [this](const std::string& text) {
           const auto seconds = parseInterval(text);
           if (!seconds) {
             throw CLI::ValidationError(
                 "--interval", "\"" + text + "\" is not a number of seconds from 0.1 to 3600");
           }
           interval = seconds;
         },
         "Time from one refresh to the next, from 0.1\nto 3600; the setting or 1 by default")
      ->type_name("SECONDS");
  app.add_option_function<std::string>(
         "--bundle",
         [this](const std::string& text) {
           // Whatever else it is, the loader says what it expects of a bundle.
           if (text.empty()) {
             throw CLI::ValidationError("--bundle", "\"\" is not a directory");
           }
           bundle = text;
         },
         "The module's bundle; the installed one by default")
      ->type_name("DIR");
  addDirectory(app, "--proc", proc, "Where the proc file system is; /proc by default");
  addDirectory(app, "--sys", sys, "Where the sys file system is; /sys by default");
  addDirectory(app, "--debugfs", debugfs,
               "Where the debug file system is; kernel/debug\nbelow --sys by default");
  addFlag(app, "--discrete", discrete,
          "Stay on the discrete graphics processor, if\nthe preferences have the one in use shown");
  addFlag(app, "--integrated", integrated,
          "Stay on the integrated one, likewise;\n--discrete comes first");
  addFlag(app, "--dynamic", dynamic,
          "Let the system choose, as without one of the\nthree; the other two come first");
}

std::vector<std::string> HostOptions::switchingFlags() const {
  std::vector<std::string> flags;
  for (const auto& [flag, given] :
       {std::pair{"--discrete", discrete}, {"--integrated", integrated}, {"--dynamic", dynamic}}) {
    if (given) {
      flags.emplace_back(flag);
    }
  }
  return flags;
}

std::optional<CommandLineAnswer> parseCommandLine(CLI::App& app, int argc,
                                                  const char* const* argv) {
  try {
    app.parse(argc, argv);
  } catch (const CLI::CallForVersion& version) {
    return CommandLineAnswer{0, std::string(version.what()) + "\n"};
  } catch (const CLI::CallForHelp&) {
    return CommandLineAnswer{0, app.help()};
  } catch (const CLI::ArgumentMismatch& error) {
    return CommandLineAnswer{2, mismatch(app, error.what())};
  } catch (const CLI::ExtrasError&) {
    return CommandLineAnswer{2, unexpected(app)};
  } catch (const CLI::ParseError& error) {
    return CommandLineAnswer{2, error.what()};
  }
  return std::nullopt;
}

}  // namespace vel
