// An application of the desktop: its entry, and starting it.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "host/desktop/workspace/GObjectPtr.h"

namespace vel {

class Application {
 public:
  /// Takes over the reference.
  explicit Application(GAppInfo* info) : info_(G_DESKTOP_APP_INFO(info), GObjectUnref()) {}

  /// A program without an entry, by name or path. None if PATH has no such program.
  static std::optional<Application> ofProgram(const char* program);

  /// The desktop file identifier without ".desktop"; empty for a program without an entry.
  [[nodiscard]] std::string id() const;
  /// In the user's language, as plain text on one line.
  [[nodiscard]] std::string displayName() const;
  /// A name in the icon theme or an absolute path.
  [[nodiscard]] std::optional<std::string> icon() const;

  [[nodiscard]] bool hasCategory(std::string_view category) const;
  [[nodiscard]] std::vector<std::string> categories() const;
  /// The desktops of OnlyShowIn.
  [[nodiscard]] std::vector<std::string> onlyShownIn() const;
  /// Whether name, generic name or keywords have one of the words, in English and lower case.
  [[nodiscard]] bool mentions(const std::vector<std::string_view>& words) const;
  [[nodiscard]] bool declaresType(std::string_view mimeType) const;

  /// Whether the running desktop's menus show it.
  [[nodiscard]] bool isShown() const;
  [[nodiscard]] bool runsInTerminal() const;
  /// The file name of what it runs.
  [[nodiscard]] std::string program() const;

  /// Starts it in a session of its own, as no child of ours, with nothing open that is ours and in
  /// the environment that we were started in. Does not wait for it.
  [[nodiscard]] bool launch() const;

 private:
  [[nodiscard]] GAppInfo* appInfo() const { return G_APP_INFO(info_.get()); }

  std::shared_ptr<GDesktopAppInfo> info_;
};

}  // namespace vel
