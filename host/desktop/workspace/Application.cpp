#include "host/desktop/workspace/Application.h"

#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>

#include "host/desktop/workspace/Words.h"

namespace vel {
namespace {

/// Names come from files that anyone may have written.
bool isPlain(gunichar character) {
  constexpr gunichar kZeroWidthNonJoiner = 0x200C;
  constexpr gunichar kZeroWidthJoiner = 0x200D;
  if (character == kZeroWidthNonJoiner || character == kZeroWidthJoiner) {
    return true;  // part of the spelling in some languages
  }
  switch (g_unichar_type(character)) {
    case G_UNICODE_CONTROL:
    case G_UNICODE_FORMAT:
    case G_UNICODE_LINE_SEPARATOR:
    case G_UNICODE_PARAGRAPH_SEPARATOR:
      return false;
    default:
      return true;
  }
}

std::string plainText(const char* text) {
  const GText valid(g_utf8_make_valid(text, -1));
  std::string plain;
  for (const char* at = valid.get(); *at != '\0';) {
    const char* next = g_utf8_next_char(at);
    if (isPlain(g_utf8_get_char(at))) {
      plain.append(at, next);
    } else {
      plain += ' ';
    }
    at = next;
  }
  return plain;
}

/// Runs in the child, between fork and exec: nothing but async-signal-safe calls.
void leaveOurSession(gpointer /*unused*/) {
  setsid();
  // What we ignore, and block to read it from a descriptor, the program shall get.
  (void)std::signal(SIGPIPE, SIG_DFL);
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
}

/// What we have set since, for our own sake, is no business of others.
GObjectPtr<GAppLaunchContext> contextAsWeWereStarted() {
  GObjectPtr<GAppLaunchContext> context(g_app_launch_context_new());
  const GStrings now(g_listenv());
  for (gchar** name = now.get(); *name != nullptr; ++name) {
    g_app_launch_context_unsetenv(context.get(), *name);
  }
  std::ifstream environment("/proc/self/environ", std::ios::binary);
  for (std::string variable; std::getline(environment, variable, '\0');) {
    const auto equals = variable.find('=');
    // These two announce one start, ours.
    if (equals == std::string::npos || variable.starts_with("DESKTOP_STARTUP_ID=") ||
        variable.starts_with("XDG_ACTIVATION_TOKEN=")) {
      continue;
    }
    g_app_launch_context_setenv(context.get(), variable.substr(0, equals).c_str(),
                                &variable[equals + 1]);
  }
  return context;
}

std::string fileName(const char* path) {
  return std::filesystem::path(path).filename();
}

}  // namespace

std::optional<Application> Application::ofProgram(const char* program) {
  if (!GText(g_find_program_in_path(program))) {
    return std::nullopt;
  }
  GAppInfo* info = g_app_info_create_from_commandline(GText(g_shell_quote(program)).get(),
                                                      fileName(program).c_str(),
                                                      G_APP_INFO_CREATE_NONE, nullptr);
  return info == nullptr ? std::nullopt : std::optional<Application>(info);
}

std::string Application::id() const {
  const char* file = g_app_info_get_id(appInfo());
  return file == nullptr ? "" : std::filesystem::path(file).replace_extension().string();
}

std::string Application::displayName() const {
  return plainText(g_app_info_get_display_name(appInfo()));
}

std::optional<std::string> Application::icon() const {
  GIcon* icon = g_app_info_get_icon(appInfo());
  if (G_IS_THEMED_ICON(icon)) {
    return g_themed_icon_get_names(G_THEMED_ICON(icon))[0];
  }
  if (G_IS_FILE_ICON(icon)) {
    const GText path(g_file_get_path(g_file_icon_get_file(G_FILE_ICON(icon))));
    return path ? std::optional<std::string>(path.get()) : std::nullopt;
  }
  return std::nullopt;
}

std::vector<std::string> Application::categories() const {
  const char* categories = g_desktop_app_info_get_categories(info_.get());
  return categories == nullptr ? std::vector<std::string>{} : split(categories, ";");
}

bool Application::hasCategory(std::string_view category) const {
  const std::vector<std::string> all = categories();
  return std::find(all.begin(), all.end(), category) != all.end();
}

std::vector<std::string> Application::onlyShownIn() const {
  const GText desktops(g_desktop_app_info_get_string(info_.get(), "OnlyShowIn"));
  return desktops ? split(desktops.get(), ";") : std::vector<std::string>{};
}

bool Application::mentions(const std::vector<std::string_view>& words) const {
  for (const char* key : {"Name", "GenericName", "Keywords"}) {
    const GText text(g_desktop_app_info_get_string(info_.get(), key));
    for (const std::string& word : text ? wordsOf(text.get()) : std::vector<std::string>{}) {
      if (std::find(words.begin(), words.end(), word) != words.end()) {
        return true;
      }
    }
  }
  return false;
}

bool Application::declaresType(std::string_view mimeType) const {
  const char** types = g_app_info_get_supported_types(appInfo());
  for (; types != nullptr && *types != nullptr; ++types) {
    if (*types == mimeType) {
      return true;
    }
  }
  return false;
}

bool Application::isShown() const {
  return g_app_info_should_show(appInfo());
}

bool Application::runsInTerminal() const {
  return g_desktop_app_info_get_boolean(info_.get(), "Terminal");
}

std::string Application::program() const {
  const char* executable = g_app_info_get_executable(appInfo());
  return executable == nullptr ? "" : fileName(executable);
}

bool Application::launch() const {
  const auto context = contextAsWeWereStarted();
  // GLib forks twice and closes the other descriptors, as no flag says otherwise.
  const auto flags =
      GSpawnFlags(G_SPAWN_SEARCH_PATH | G_SPAWN_STDOUT_TO_DEV_NULL | G_SPAWN_STDERR_TO_DEV_NULL);
  return g_desktop_app_info_launch_uris_as_manager(info_.get(), nullptr, context.get(), flags,
                                                   leaveOurSession, nullptr, nullptr, nullptr,
                                                   nullptr);
}

}  // namespace vel
