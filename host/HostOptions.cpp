#include "host/HostOptions.h"

#include <CLI/CLI.hpp>
#include <charconv>
#include <system_error>

namespace vel {
namespace {

constexpr double kShortestInterval = 0.1;
constexpr double kLongestInterval = 3600.0;

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

/// CLI11 says "--interval: 1 required SECONDS missing" and the like; that is no English.
std::string mismatch(const CLI::App& app, const std::string& message) {
  const std::string name = message.substr(0, message.find(':'));
  const CLI::Option* option = app.get_option_no_throw(name);
  return option == nullptr ? message : name + ": expected once, with " + option->get_type_name();
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
           interval = *seconds;
         },
         "Time between two refreshes, 1 by default")
      ->type_name("SECONDS (0.1 to 3600)");
  app.add_option_function<std::string>(
         "--bundle", [this](const std::string& text) { bundle = text; },
         "The module's bundle, the installed one by default")
      ->type_name("DIR");
  addDirectory(app, "--proc", proc, "Where the proc file system is, /proc by default");
  addDirectory(app, "--sys", sys, "Where the sys file system is, /sys by default");
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
  } catch (const CLI::ParseError& error) {
    return CommandLineAnswer{2, error.what()};
  }
  return std::nullopt;
}

}  // namespace vel
